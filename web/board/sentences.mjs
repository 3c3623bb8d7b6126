// What is said of a move in a review. In English these are the sentences of the core. The texts of
// another language may have shorter ones, which are filled from the same record.

const mateIn = (line) => line?.mate ?? null;

/** The key of what there is to say. A mate is of the side that moved where it is above 0. */
function keyOf({ played, lines: [best] }) {
  const { judgement, line, move } = played;
  if (judgement.accuracy === null) {
    return "only";
  }
  const [wanted, got] = [mateIn(best), mateIn(line)];
  if (got < 0 && !(wanted < 0)) {
    return "allows";
  }
  if (wanted > 0 && !(got > 0)) {
    return "misses";
  }
  if (best.moves.split(" ")[0] === move) {
    return judgement.mark ? "alone" : "best";
  }
  if (line.score >= best.score) {
    return "equal";
  }
  return judgement.lost < 50 ? "near" : "loss";
}

/**
 * The sentence on a move that was judged.
 * @param label writes a move of the record's position, with its number.
 */
export function sentenceOf(texts, record, label) {
  const { judgement, san, line } = record.played;
  if (!texts.has("sentence.best")) {
    return judgement.sentence;
  }
  const key = keyOf(record);
  const [best] = record.lines;
  const mate = key === "allows" ? -line.mate : best?.mate;
  return texts.get("sentence." + key, { move: label(san), best: label(best.san.split(" ")[0]),
    moves: mate, lost: Math.round(judgement.lost / 10) });
}
