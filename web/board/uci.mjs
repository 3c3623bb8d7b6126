// What the engine tells in UCI.

const NUMBERS = { depth: "depth", multipv: "line", nodes: "nodes", nps: "speed", time: "time" };

/** A line of `info` as an object, or null where it tells nothing of a line of moves. */
export function readInfo(text) {
  const words = text.trim().split(/\s+/);
  if (words[0] !== "info" || words[1] === "string") {
    return null;
  }
  const info = { line: 1, moves: [] };
  for (let i = 1; i < words.length; i += 1) {
    const word = words[i];
    if (word in NUMBERS) {
      info[NUMBERS[word]] = Number(words[i + 1]);
    } else if (word === "score") {
      info[words[i + 1] === "mate" ? "mate" : "centipawns"] = Number(words[i + 2]);
    } else if (word === "lowerbound" || word === "upperbound") {
      info.bound = word;
    } else if (word === "wdl") {
      info.chances = (Number(words[i + 1]) + Number(words[i + 2]) / 2) / 10;
    } else if (word === "pv") {
      info.moves = words.slice(i + 1);
      break;
    }
  }
  return info;
}

export const bestMove = (text) => text.match(/^bestmove (\S+)/)?.[1] ?? null;

export const positionCommand = ({ start, moves }) =>
  "position " + (start === "startpos" ? start : "fen " + start) +
  (moves.length ? " moves " + moves.join(" ") : "");

/** A score as White's: "+0.53", "#3", "#-3". */
export function scoreText(info, side) {
  const sign = side === "white" ? 1 : -1;
  if (info.mate !== undefined) {
    return "#" + (sign * info.mate < 0 ? "\u2212" : "") + Math.abs(info.mate);
  }
  const value = (sign * info.centipawns) / 100;
  const text = (value > 0 ? "+" : value < 0 ? "\u2212" : "") + Math.abs(value).toFixed(2);
  return text;
}

/** White's share of the points to be expected, 0 to 100. */
export const whiteShare = (info, side) =>
  info.chances === undefined ? 50 : side === "white" ? info.chances : 100 - info.chances;
