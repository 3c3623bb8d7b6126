"""Counts what the records of games say: of each player, and of each two who met."""

from collections import Counter, defaultdict

# Games of a process after which its memory should not grow any more.
SETTLING_GAMES = 3
POINTS = {"1-0": (2, 0), "0-1": (0, 2), "1/2-1/2": (1, 1)}


class Score:
    """Games of one player, against one other or against all."""

    def __init__(self):
        self.wins = self.draws = self.losses = 0
        # Pairs with 0, 1/2, 1, 3/2 and 2 points.
        self.pairs = [0] * 5

    def add(self, half_points):
        self.wins += half_points == 2
        self.draws += half_points == 1
        self.losses += half_points == 0

    @property
    def games(self):
        return self.wins + self.draws + self.losses

    @property
    def points(self):
        return self.wins + self.draws / 2

    def words(self):
        return f"+{self.wins} ={self.draws} -{self.losses}"


class Work:
    """How a player searched, and what it did that it must not."""

    def __init__(self):
        self.depths = Counter()
        self.nodes = self.node_time = 0
        self.time_losses = 0
        # Searches far beyond their nodes.
        self.overruns = 0
        self.faults = Counter()
        self.growth = self.process_games = 0

    def add(self, entry, index):
        """Takes the half-moves of White (0) or Black (1) of a game in."""
        to_move = 0 if entry["fen"].split()[1] == "w" else 1
        first = (to_move + len(entry["opening"]) + index) % 2
        self.depths.update(filter(None, entry["depths"][first::2]))
        for nodes, time in zip(entry["nodes"][first::2], entry["times"][first::2]):
            if nodes:
                self.nodes += nodes
                self.node_time += time
        # Older records do not have it.
        self.overruns += entry.get("overruns", (0, 0))[index]
        if entry["memory"]:
            self.growth = max(self.growth, entry["memory"][index]["growth"])
            self.process_games = max(self.process_games, entry["memory"][index]["games"])

    @property
    def depth(self):
        """The mean of the last depths of all searches, None without any."""
        count = self.depths.total()
        return sum(d * n for d, n in self.depths.items()) / count if count else None

    @property
    def speed(self):
        """Nodes a second by the clock of the match, None where nobody told nodes."""
        return 1000 * self.nodes / self.node_time if self.node_time else None


class Standings:
    """All counts of one or several matches; what has no name yet gets its place when it comes."""

    def __init__(self, names=()):
        self.names = list(names)
        self.totals = defaultdict(Score)
        self.meetings = defaultdict(Score)
        self.work = defaultdict(Work)
        self.games = 0
        self.reasons = Counter()
        self.results = Counter()
        self.faults = []
        # What the first game of a pair brought to whom, until the second one comes.
        self._halves = {}

    def add(self, entry, match=0):
        """Takes an entry of a run in; the pairs of different matches are different ones."""
        for fault in entry["faults"]:
            self.work[fault["engine"]].faults[fault["kind"]] += 1
            self.faults.append(fault)
        if entry["kind"] != "game":
            return
        self.games += 1
        self.reasons[entry["reason"]] += 1
        self.results[entry["result"]] += 1
        players = entry["white"], entry["black"]
        points = dict(zip(players, POINTS[entry["result"]]))
        for index, name in enumerate(players):
            if name not in self.names:
                self.names.append(name)
            self.totals[name].add(points[name])
            self.meetings[name, players[1 - index]].add(points[name])
            self.work[name].add(entry, index)
            if entry["reason"] == "time forfeit" and points[name] == 0:
                self.work[name].time_losses += 1
        first = self._halves.pop((match, entry["pair"]), None)
        if first is None:
            self._halves[match, entry["pair"]] = points
        else:
            self._add_pair(players, first, points)

    def _add_pair(self, players, first, second):
        for name, other in (players, players[::-1]):
            half_points = first[name] + second[name]
            self.totals[name].pairs[half_points] += 1
            self.meetings[name, other].pairs[half_points] += 1

    @property
    def pairs(self):
        """The pairs of the first of two players, from his side."""
        return self.meetings[self.names[0], self.names[1]].pairs
