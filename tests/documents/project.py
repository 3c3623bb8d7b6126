"""Where the tests find the tree, the programs, and all documents."""

import os

from markdown import read_all

ROOT = os.environ["DOCUMENTS_ROOT"]
# The folder of the engine and its tools as this build made them.
PROGRAMS = os.environ["DOCUMENTS_PROGRAMS"]
ENGINE = os.path.join(PROGRAMS, "orvelin")
PLAY = os.path.join(PROGRAMS, "orvelin-play")
HERE = os.path.dirname(os.path.realpath(__file__))
DOCUMENTS = read_all(ROOT)
