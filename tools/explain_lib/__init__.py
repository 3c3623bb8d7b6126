"""What orvelin-explain is made of."""
