"""What a match gave: the table, the crosstable, and the same for other programs."""

import json
import math

from match_lib.standings import SETTLING_GAMES
from match_lib.statistics import QUANTILE, elo_of, estimate
from orvelin_lib.table import counted, table, thousands

HEAD = "engine games win draw loss score Elo +- superior draws depth knps time faults".split()
PAIR_NAMES = ("0", "1/2", "1", "3/2", "2")


def text(standings, sprt=None):
    """All that is told at the end."""
    lines = [standings_table(standings)]
    if len(standings.names) == 2:
        lines += ["", _pairs_line(standings)]
    elif len(standings.names) > 2:
        lines += ["", crosstable(standings)]
    if sprt is not None:
        lines.append(sprt.text(standings.pairs))
    lines += ["", _counts_line("ends", standings.reasons)]
    lines.append(_counts_line("results", standings.results))
    lines += _fault_lines(standings)
    return "\n".join(lines) + "\n"


def standings_table(standings):
    """A row for each player, the best first."""
    names = _ranked(standings)
    head, rows = [*HEAD], [_row(standings, name) for name in names]
    # Hardly any match has such searches.
    if any(standings.work[name].overruns for name in names):
        head.append("over")
        for name, row in zip(names, rows):
            row.append(standings.work[name].overruns)
    return table(head, rows)


def _ranked(standings):
    def share(name):
        total = standings.totals[name]
        return -total.points / total.games if total.games else 0

    return sorted(standings.names, key=share)


def _row(standings, name):
    total, work = standings.totals[name], standings.work[name]
    games, elo = total.games, _elo(total)
    found = estimate(total.pairs)
    return [
        name,
        games,
        total.wins,
        total.draws,
        total.losses,
        _percent(total.points, games),
        "-" if elo is None else signed(elo),
        signed(found.error).lstrip("+") if found else "-",
        f"{100 * found.superiority:.1f} %" if found else "-",
        _percent(total.draws, games),
        "-" if work.depth is None else f"{work.depth:.1f}",
        "-" if work.speed is None else thousands(work.speed),
        work.time_losses,
        sum(work.faults.values()),
    ]


def _elo(score):
    """The difference to the opponents, None without a game; it is infinite for all points or none."""
    return elo_of(score.points / score.games) if score.games else None


def _percent(part, whole):
    return f"{100 * part / whole:.1f} %" if whole else "-"


def signed(elo, digits=1):
    """A difference with its sign, so many digits behind the point."""
    if not math.isfinite(elo):
        return "inf" if elo > 0 else "-inf"
    text = f"{elo:+.{digits}f}"
    return text[1:] if float(text) == 0 else text


def _pairs_line(standings):
    words = ", ".join(f"{name}: {count}" for name, count in zip(PAIR_NAMES, standings.pairs))
    return f"{'pairs by points':<20}{words} (of {standings.names[0]})"


def _counts_line(title, counts):
    words = ", ".join(f"{name} {count}" for name, count in counts.most_common())
    return f"{title:<20}{words or '-'}"


def _fault_lines(standings):
    growths = [f"{name} {_growth(standings.work[name])}" for name in standings.names]
    yield f"{'growth of memory':<20}{', '.join(growths) or '-'}"
    if not standings.faults:
        yield f"{'faults':<20}none: no illegal move, crash, stall, stray answer or time loss"
    for fault in standings.faults:
        yield f"  {fault['engine']}: {fault['kind']}: {fault['detail'][:100]}: {fault['file']}"


def _growth(work):
    return f"{work.growth} KiB" if work.process_games > SETTLING_GAMES else "-"


def crosstable(standings):
    """Who scored what against whom, from the side of the row."""
    names = _ranked(standings)
    rows = []
    for name in names:
        cells = [
            standings.meetings[name, other].words() if (name, other) in standings.meetings else "-"
            for other in names
        ]
        rows.append([name, *cells])
    return table(["", *names], rows)


def progress(standings, planned, sprt=None):
    """One line while the match goes on."""
    words = f"game {standings.games} of {planned}"
    if len(standings.names) == 2:
        first = standings.names[0]
        words += f", {first} {standings.totals[first].words()}"
        found = estimate(standings.totals[first].pairs)
        if found:
            words += f", Elo {signed(found.elo)} +- {signed(found.error).lstrip('+')}"
        if sprt is not None:
            words += f", {sprt.state(standings.pairs)}"
    return f"{words}, {counted(len(standings.faults), 'fault')}"


def json_text(standings, sprt=None):
    """All figures, for other programs: null where a figure is not known, and "inf" or "-inf" where
    it is infinite, for which JSON has no number."""
    record = {
        "games": standings.games,
        "engines": [_figures(standings, name) for name in _ranked(standings)],
        "meetings": [
            {"engine": name, "opponent": other, **_scores(score)}
            for (name, other), score in standings.meetings.items()
        ],
        "ends": dict(standings.reasons),
        "faults": standings.faults,
        "sprt": None,
    }
    if sprt is not None:
        ratio, verdict = sprt.ratio(standings.pairs), sprt.verdict(standings.pairs)
        record["sprt"] = {**sprt.as_dict(), "llr": ratio, "bounds": sprt.bounds, "taken": verdict}
    return json.dumps(record, indent=2) + "\n"


def _figures(standings, name):
    work = standings.work[name]
    return {
        "engine": name,
        **_scores(standings.totals[name]),
        "depth": work.depth,
        "nodes_per_second": work.speed,
        "time_losses": work.time_losses,
        "overruns": work.overruns,
        "faults": dict(work.faults),
        "memory_growth": work.growth if work.process_games > SETTLING_GAMES else None,
    }


def _scores(score):
    found = estimate(score.pairs)
    values = {} if found is None else vars(found)
    figures = {name: values.get(name) for name in ("low", "high", "superiority")}
    return {
        "games": score.games,
        "wins": score.wins,
        "draws": score.draws,
        "losses": score.losses,
        "pairs": score.pairs,
        "elo": _number(_elo(score)),
        **{name: _number(value) for name, value in figures.items()},
        "quantile": QUANTILE,
    }


def _number(value):
    if value is None or math.isfinite(value):
        return value
    return "inf" if value > 0 else "-inf"
