// Moves as people give them: typed, or as two squares. Which are legal is told by the core.

const plain = (san) => san.replace(/[+#!?=\s]/g, "").replace(/0/g, "O").replace(/[–—]/g, "-");

/**
 * The legal moves that a text can mean, in SAN or UCI; none or several where it is not clear.
 * @param say tells how the reader's language writes a move in SAN, which goes first.
 */
export function typedMoves(text, legal, say = (san) => san) {
  const wanted = plain(text);
  if (!wanted) {
    return [];
  }
  const coordinates = text.trim().toLowerCase().replace(/[-=\s]/g, "");
  const small = wanted.toLowerCase();
  const ways = [
    (move) => plain(say(move.san)) === wanted,
    (move) => plain(move.san) === wanted,
    (move) => move.uci === coordinates,
    // Which piece a pawn becomes is left open.
    (move) => /^[a-h][1-8][a-h][1-8]$/.test(coordinates) && move.uci.startsWith(coordinates),
    (move) => move.promotion && plain(move.san).slice(0, -1) === wanted,
    // Without regard to capitals, where that leaves one: nf3, o-o, but bxc4 is a pawn's.
    (move) => plain(say(move.san)).toLowerCase() === small,
    (move) => plain(move.san).toLowerCase() === small,
  ];
  for (const fits of ways) {
    const found = legal.filter(fits);
    if (found.length) {
      return found;
    }
  }
  return [];
}

/** Where a piece can be put: a map from names of squares to the legal moves that go there. */
export function targetsOf(from, legal) {
  const own = legal.filter((move) => move.from === from);
  const targets = new Map();
  const add = (name, move) => targets.set(name, [...(targets.get(name) ?? []), move]);
  own.filter((move) => !move.castling).forEach((move) => add(move.to, move));
  for (const move of own.filter((each) => each.castling)) {
    // Shown by where the king goes, or by his rook. A square that he may step on means the step.
    for (const name of new Set([move.kingTo, move.rookFrom])) {
      if (!targets.has(name) && name !== from) {
        add(name, move);
      }
    }
  }
  return targets;
}
