// Moves as people give them: typed, or as two squares. Which are legal is told by the core.

import { boardOf, FILES, nameOf, squareOf } from "./fen.mjs";

const plain = (san) => san.replace(/[+#!?=\s]/g, "").replace(/0/g, "O").replace(/[–—]/g, "-");

/** The legal moves that a text can mean, in SAN or UCI; none or several where it is not clear. */
export function typedMoves(text, legal) {
  const wanted = plain(text);
  if (!wanted) {
    return [];
  }
  const exact = legal.filter((move) => plain(move.san) === wanted);
  if (exact.length) {
    return exact;
  }
  const coordinates = text.trim().toLowerCase().replace(/[-=\s]/g, "");
  const uci = legal.filter((move) => move.uci === coordinates);
  if (uci.length) {
    return uci;
  }
  if (/^[a-h][1-8][a-h][1-8]$/.test(coordinates)) {
    return legal.filter((move) => move.uci.startsWith(coordinates));
  }
  // Without regard to capitals, where that leaves one: nf3, o-o, but bxc4 is a pawn's.
  return legal.filter((move) => plain(move.san).toLowerCase() === wanted.toLowerCase());
}

// The squares that castling can be shown by: where the king goes, and where its rook stands.
function castlingTargets(move, board) {
  const from = squareOf(move.from);
  const to = squareOf(move.to);
  const first = from - (from % 8);
  const right = to > from;
  const rook = board[from] === "K" ? "R" : "r";
  let corner = to;
  if (board[to] !== rook) {
    corner = right ? first + 7 : first;
    while (board[corner] !== rook && corner !== from) {
      corner += right ? -1 : 1;
    }
  }
  const goal = FILES[right ? 6 : 2] + move.from[1];
  return [...new Set([move.to, nameOf(corner), goal])].filter((name) => name !== move.from);
}

/** Where a piece can be put: a map from names of squares to the legal moves that go there. */
export function targetsOf(from, legal, fen) {
  const own = legal.filter((move) => move.from === from);
  const targets = new Map();
  const add = (name, move) => targets.set(name, [...(targets.get(name) ?? []), move]);
  own.filter((move) => !move.castling).forEach((move) => add(move.to, move));
  const board = boardOf(fen);
  for (const move of own.filter((each) => each.castling)) {
    for (const name of castlingTargets(move, board)) {
      // A square that the king may step on means the step.
      if (!targets.has(name)) {
        add(name, move);
      }
    }
  }
  return targets;
}
