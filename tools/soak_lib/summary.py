"""Counts what happened in a run and prints it."""

from collections import Counter, defaultdict

class ControlCount:
    """The games of one time control."""

    def __init__(self):
        self.games = self.plies = self.no_budget = 0
        # (clock before the move, milliseconds taken too much)
        self.forfeits = []

    def add(self, entry):
        self.games += 1
        self.plies += entry["plies"]
        self.no_budget += entry["no_budget"]
        self.forfeits += entry["forfeits"]

    def words(self):
        """The counts as the table shows them."""
        worst = clocks = "-"
        if self.forfeits:
            before, overruns = zip(*self.forfeits)
            worst, clocks = f"{max(overruns):.1f}", f"{min(before):.0f}-{max(before):.0f}"
        return self.games, self.plies, len(self.forfeits), worst, clocks, self.no_budget


class Summary:
    """All counts of a run."""

    def __init__(self):
        self.games = self.plies = 0
        self.seconds = 0.0
        self.kinds, self.results, self.by_engine = Counter(), Counter(), Counter()
        self.reasons, self.faults, self.pondering = Counter(), Counter(), Counter()
        self.fault_list = []
        self.controls = defaultdict(ControlCount)
        self.memory, self.growth, self.process_games = 0, 0, 0

    def add(self, entry):
        """Takes one entry of the log in."""
        for fault in entry["faults"]:
            self.faults[fault["kind"]] += 1
            self.fault_list.append(fault)
        if entry["kind"] != "game":
            return
        self.games += 1
        # An engine that does not start leaves no more than the number of the game.
        if "result" in entry:
            self._add_game(entry)

    def _add_game(self, entry):
        self.plies += entry["plies"]
        self.seconds += entry["seconds"]
        self.results[entry["result"]] += 1
        self.reasons[entry["reason"]] += 1
        self.kinds["Chess960" if entry["chess960"] else "standard"] += 1
        if entry["ponder"]:
            self.kinds["pondering"] += 1
        self.pondering["hits"] += entry["ponder_hits"]
        self.pondering["misses"] += entry["ponder_misses"]
        self.controls[entry["control"]].add(entry)
        if entry["result"] in ("1-0", "0-1"):
            first_won = (entry["result"] == "1-0") != entry["swapped"]
            self.by_engine["engine 1" if first_won else "engine 2"] += 1
        for memory in entry["memory"]:
            self.memory = max(self.memory, memory["resident"])
            self.growth = max(self.growth, memory["growth"])
            self.process_games = max(self.process_games, memory["games"])

    @property
    def clean(self):
        """True when no engine did what it must never do."""
        return not self.fault_list

    def progress(self, planned):
        late = sum(len(count.forfeits) + count.no_budget for count in self.controls.values())
        return (
            f"game {self.games} of {planned}, {self.plies} plies, "
            f"{len(self.fault_list)} faults, {late} clocks run out"
        )

    def text(self, planned):
        """The table for the end of a run."""
        lines = [f"{'games':<24}{self.games} of {planned}"]
        lines.append(f"{'plies':<24}{self.plies}")
        lines.append(f"{'seconds of play':<24}{self.seconds:.0f}")
        for title, counts in (
            ("kinds", self.kinds),
            ("results", self.results),
            ("won by", self.by_engine),
            ("ends", self.reasons),
            ("pondering", self.pondering),
        ):
            words = ", ".join(f"{name} {count}" for name, count in counts.most_common())
            lines.append(f"{title:<24}{words or '-'}")
        lines.append(f"{'resident memory':<24}{self.memory} KiB at most")
        lines.append(
            f"{'growth of memory':<24}{self.growth} KiB at most, "
            f"after up to {self.process_games} games of a process"
        )
        lines += ["", *self._control_lines(), "", *self._fault_lines()]
        return "\n".join(lines) + "\n"

    def _control_lines(self):
        head = ("control", "games", "plies", "forfeits", "worst ms", "clocks ms", "no budget")
        yield "".join(f"{word:<14}" for word in head).rstrip()
        for name, count in sorted(self.controls.items(), key=lambda item: _base_of(item[0])):
            words = (name, *count.words())
            yield "".join(f"{word:<14}" for word in words).rstrip()

    def _fault_lines(self):
        if self.clean:
            yield "no faults: no illegal move, no crash, no lost or stray answer"
        for kind, count in self.faults.most_common():
            yield f"{kind:<24}{count}"
        for fault in self.fault_list:
            yield f"  {fault['engine']}: {fault['kind']}: {fault['detail']}: {fault['file']}"


def _base_of(control):
    return int(control.split("/")[-1].split("+")[0]), control
