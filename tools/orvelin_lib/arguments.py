"""What both command lines check alike."""

import argparse


def positive(text):
    value = int(text)
    if value < 1:
        raise argparse.ArgumentTypeError(f"{text} is below 1")
    return value


def positive_list(text):
    return [positive(word) for word in text.split(",")]
