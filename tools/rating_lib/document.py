"""The page that tells how strong the engine and its levels are, from kept results alone."""

import re
from collections import Counter
from dataclasses import dataclass

from match_lib.report import signed
from match_lib.standings import Standings
from match_lib.statistics import elo_of, estimate
from orvelin_lib.table import counted, table
from rating_lib.games import results_of
from rating_lib.plan import GAMES, LEVELS
from rating_lib.ratings import rated
from rating_lib.words import (
    EQUAL,
    FAULTS,
    FULL,
    HEAD,
    LEFT_OUT,
    LEVEL_NOTE,
    MATCHES,
    MODEL,
    PLAY,
    PRELIMINARY,
    SCALE,
)

# What a record has and a kept game has not, so that the same counts can be made of both.
NOT_KEPT = {"kind": "game", "fen": "- w", "depths": [], "nodes": [], "times": [], "memory": None}


@dataclass(frozen=True)
class Summary:
    """A match of two players in figures, in the order in which its settings name them."""

    match: object
    standings: Standings
    depths: tuple
    least_left: tuple

    @property
    def players(self):
        return [self.match.players[player["name"]] for player in self.match.head["players"]]

    @property
    def is_equal(self):
        """Whether it is one engine with the same settings against itself."""
        first, second = self.players
        same = ("title", "limit", "options", "program")
        return all(getattr(first, key) == getattr(second, key) for key in same)


def summary(match):
    """The figures of a match."""
    names = [player["name"] for player in match.head["players"]]
    standings = Standings(names)
    depths, left = {name: [] for name in names}, {name: [] for name in names}
    for game in match.games:
        faults = [
            {"engine": engine, "kind": kind}
            for engine, kind, count in game["faults"]
            for _ in range(count)
        ]
        standings.add({**game, **NOT_KEPT, "opening": [], "faults": faults})
        for index, name in enumerate((game["white"], game["black"])):
            depths[name].append(game["depth"][index])
            left[name].append(game["left"][index])
    return Summary(
        match,
        standings,
        tuple(_mean(depths[name]) for name in names),
        tuple(_least(left[name]) for name in names),
    )


def _least(values):
    return min((value for value in values if value is not None), default=None)


def _mean(values):
    known = [value for value in values if value is not None]
    return sum(known) / len(known) if known else None


def document(matches, play_rows=()):
    """The whole page."""
    ratings = rated(results_of(matches))
    summaries = [summary(match) for match in matches if match.games]
    equal = [each for each in summaries if each.is_equal]
    others = [each for each in summaries if not each.is_equal]
    parts = [HEAD, *_levels(ratings, others)]
    if play_rows:
        parts += [PLAY, _play_table(play_rows)]
    parts += [FULL, _full_table(ratings, others), *_scale(ratings)]
    parts += ["## Other engines", _engines_table(ratings, others)]
    if equal:
        parts += [EQUAL, _matches_table(equal)]
    parts += [MATCHES, _matches_table(others), *_faults(summaries), *_left_out(ratings, others)]
    return "\n\n".join(part.strip("\n") for part in parts) + "\n"


def _players(summaries):
    """All players by label, in the order of the files."""
    return {player.label: player for each in summaries for player in each.players}


def _scale(ratings):
    rows = []
    for label, claim in sorted(ratings.anchors.items(), key=lambda each: (each[1], each[0])):
        rating = ratings.ratings[label]
        rows.append([label, claim, *_figures(rating), f"{rating.elo - claim:+.0f}"])
    yield SCALE
    yield table(("engine", "its claim", "fitted", "+-", "games", "difference"), rows)
    advantage, error = ratings.advantage
    shares = ratings.fit.draws / (2 + ratings.fit.draws)
    yield MODEL.format(advantage=f"{advantage:.0f} ± {error:.0f}", draws=f"{100 * shares:.0f} %")


def _figures(rating):
    """Cells of the rating, its error, and the number of games."""
    if rating is None:
        return ["-", "-", "-"]
    return [f"{rating.elo:.0f}", f"{rating.error:.0f}", rating.games]


def _levels(ratings, summaries):
    players = _players(summaries)
    levels = {
        player.level: label
        for label, player in players.items()
        if player.is_ours and player.level is not None
    }
    rows, played = [], 0
    for level in sorted({*LEVELS, *levels}):
        rating = ratings.ratings.get(levels.get(level))
        inside = "-"
        if rating is not None:
            inside = "yes" if abs(rating.elo - level) <= rating.error else "no"
            played += rating.games
        opponents = _opponents(levels.get(level), summaries)
        rows.append([level, *_figures(rating), inside, opponents])
    yield LEVEL_NOTE
    yield table(("UCI_Elo", "rating", "+-", "games", "inside", "opponents (games)"), rows)
    games = sum(each.standings.games for each in summaries if _has_level(each))
    if any(row[3] == "-" or row[3] < GAMES for row in rows):
        yield PRELIMINARY.format(games=counted(games, "game"))


def _has_level(each):
    return any(player.is_ours and player.level is not None for player in each.players)


def _opponents(label, summaries):
    """Whom a player met, by the short names of the files."""
    met = Counter()
    for each in summaries:
        labels = [player.label for player in each.players]
        if label in labels:
            other = each.players[1 - labels.index(label)]
            met[_short(other.name)] += each.standings.games
    return ", ".join(f"{name} ({games})" for name, games in met.items()) or "-"


def _full_table(ratings, summaries):
    rows = []
    for label, player in _players(summaries).items():
        if player.is_ours and player.level is None:
            rating = ratings.ratings.get(label)
            rows.append([label, *_figures(rating), _opponents(label, summaries)])
    return table(("engine", "rating", "+-", "games", "opponents (games)"), rows)


def _engines_table(ratings, summaries):
    rows = [
        (ratings.ratings[label], player.title, label)
        for label, player in _players(summaries).items()
        if not player.is_ours and label in ratings.ratings
    ]
    rows.sort(key=lambda row: -row[0].elo)
    cells = [[label, title or "-", *_figures(rating)] for rating, title, label in rows]
    return table(("engine, what it is given", "its name", "rating", "+-", "games"), cells)


def _matches_table(summaries):
    head = "match limit margin games won drawn lost Elo +- depths least-left late".split()
    rows = [_match_row(each) for each in sorted(summaries, key=_natural)]
    return table([word.replace("-l", " l") for word in head], rows)


def _natural(each):
    """800 stands before 1100."""
    words = re.split(r"(\d+)", each.match.file)
    return [int(word) if word.isdigit() else word for word in words]


def _match_row(each):
    names = each.standings.names
    limits = dict.fromkeys(player.limit for player in each.players)
    total = each.standings.totals[names[0]]
    found = estimate(total.pairs)
    late = [each.standings.work[name].time_losses for name in names]
    return [
        " - ".join(_short(name) for name in names),
        " / ".join(limits),
        f"{each.match.head['margin']:g}",
        total.games,
        total.wins,
        total.draws,
        total.losses,
        signed(elo_of(total.points / total.games), 0),
        "-" if found is None else f"{found.error:.0f}",
        _both(each.depths, ".1f"),
        _both(each.least_left, "d"),
        _both(late, "d"),
    ]


def _short(name):
    """A level is its number alone."""
    return name.removeprefix("orvelin-play-")


def _both(values, form):
    return " / ".join("-" if value is None else format(value, form) for value in values)


def _faults(summaries):
    """Of our engine and of others, with losses on time."""
    ours, others, late, games = Counter(), Counter(), Counter(), 0
    for each in summaries:
        games += each.standings.games
        for player in each.players:
            work = each.standings.work[player.name]
            mine = player.is_ours or each.is_equal
            (ours if mine else others).update(work.faults)
            late[mine] += work.time_losses
    yield FAULTS
    yield (
        f"In {counted(games, 'game')} `orvelin-play` {_told(ours, late[True])}; the other engines"
        f" {_told(others, late[False])}. The column `late` tells in which matches."
    )


def _told(faults, late):
    other = {kind: count for kind, count in faults.items() if kind != "time"}
    words = ", ".join(f"{kind} {count}" for kind, count in sorted(other.items())) or "no fault"
    return f"had {words} and lost {counted(late, 'game')} on time"


def _left_out(ratings, summaries):
    players = _players(summaries)
    rows = [[label, why] for label, why in ratings.left_out.items() if label in players]
    if rows:
        yield LEFT_OUT
        yield table(("engine, what it is given", "why"), rows)


def _play_table(rows):
    head = ("UCI_Elo", "games", "moves", "loss a move", "?! a game", "? a game", "?? a game")
    return table(head, rows)
