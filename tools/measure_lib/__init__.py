"""Speed, start, latency and growth of UCI engines, measured from outside."""
