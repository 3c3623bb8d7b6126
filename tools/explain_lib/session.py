"""What the engine is asked."""

from explain_lib.evaluation import BadTable, Evaluation
from orvelin_lib.engine import EngineFailure, UciEngine

# Enough for what one move of a game is searched here, and soon emptied.
HASH_MEBIBYTES = 16


class Session:
    """One engine that evaluates and searches positions for as long as the context lasts."""

    def __init__(self, command, patience):
        self._patience = patience
        self._engine = UciEngine(command, patience=patience)

    def __enter__(self):
        try:
            self._engine.handshake()
            self._engine.set_option("Hash", HASH_MEBIBYTES)
            self._engine.new_game()
        except BaseException:
            self._engine.kill()
            raise
        return self

    def __exit__(self, kind, *_):
        try:
            if kind is None:
                self._engine.quit(self._patience)
        finally:
            self._engine.kill()

    @property
    def name(self):
        return self._engine.name

    def evaluation(self, line):
        """The evaluation of the position of a Line."""
        self._engine.send(line.command())
        self._engine.send("eval")
        self._engine.send("isready")
        answer = [text for _, text in self._engine.wait_for("readyok", self._patience)]
        try:
            return Evaluation(line.position.board, answer)
        except BadTable as problem:
            raise EngineFailure(
                f"the answer to eval is not its table of terms: {problem}"
            ) from None


class Line:
    """A start position and the moves from it: what the engine is told, and where it leads."""

    def __init__(self, fen, position):
        self._fen, self.position = fen, position
        self._moves = []

    def play(self, move):
        # The king taking his own rook means castling in every kind of chess.
        self._moves.append(move.text(chess960=True))
        self.position = self.position.after(move)

    def command(self):
        moves = " moves " + " ".join(self._moves) if self._moves else ""
        return f"position fen {self._fen}{moves}"
