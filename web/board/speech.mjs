// Moves and positions in words, for who hears the page.

import { boardOf, isWhite, nameOf } from "./fen.mjs";

/** "knight takes f3, check". The move is one of the core's legal moves. */
export function moveWords(texts, move) {
  const kind = /^[KQRBN]/.test(move.san) ? move.san[0] : "P";
  const words = [];
  if (move.castling) {
    words.push(texts.get(move.san.startsWith("O-O-O") ? "say.long" : "say.short"));
  } else {
    const square = move.san.match(/([a-h][1-8])(?!.*[a-h][1-8])/)[1];
    const how = move.capture ? "say.takes" : "say.moves";
    words.push(texts.get(how, { piece: texts.get("kind." + kind), from: move.from, square }));
  }
  if (move.promotion) {
    const piece = texts.get("kind." + move.promotion.toUpperCase());
    words.push(texts.get("say.promotes", { piece }));
  }
  if (move.san.includes("#")) {
    words.push(texts.get("say.mate"));
  } else if (move.san.includes("+")) {
    words.push(texts.get("say.check"));
  }
  return words.join(", ");
}

/** All pieces of a position, a side after the other. */
export function positionWords(texts, fen) {
  const board = boardOf(fen);
  return ["white", "black"].map((side) => {
    const pieces = [];
    for (const kind of "KQRBNP") {
      board.forEach((piece, square) => {
        if (piece.toUpperCase() === kind && isWhite(piece) === (side === "white")) {
          pieces.push(texts.get("kind." + kind) + " " + nameOf(square));
        }
      });
    }
    return `${texts.get(side)}: ${pieces.join(", ")}.`;
  });
}
