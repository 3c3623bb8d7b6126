// The fields of a FEN, for drawing and for the editor of positions. Rules are the core's.

export const START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
export const FILES = "abcdefgh";

/** Squares are numbered from a1 (0) by ranks to h8 (63). */
export const nameOf = (square) => FILES[square % 8] + (Math.floor(square / 8) + 1);
export const squareOf = (name) => FILES.indexOf(name[0]) + 8 * (Number(name[1]) - 1);

/** The pieces as 64 letters, with "." for an empty square. */
export function boardOf(fen) {
  const board = Array(64).fill(".");
  fen.split(" ")[0].split("/").slice(0, 8).forEach((rank, index) => {
    let file = 0;
    for (const letter of rank) {
      if (/[1-8]/.test(letter)) {
        file += Number(letter);
      } else if (file < 8) {
        board[8 * (7 - index) + file] = letter;
        file += 1;
      }
    }
  });
  return board;
}

/** The first field of a FEN. */
export function placementOf(board) {
  const ranks = [];
  for (let rank = 7; rank >= 0; rank -= 1) {
    ranks.push(board.slice(8 * rank, 8 * rank + 8).join("").replace(/\.+/g, (gap) => gap.length));
  }
  return ranks.join("/");
}

export const isWhite = (piece) => piece >= "A" && piece <= "Z";
export const sideToMove = (fen) => (fen.split(" ")[1] === "b" ? "black" : "white");
export const otherSide = (side) => (side === "white" ? "black" : "white");
export const numberOf = (fen) => Number(fen.split(" ")[5]) || 1;

/** Of moves from a position on: "12." before one of White, "12..." before Black's first. */
export function numbered(fen, sans) {
  let number = numberOf(fen);
  let white = sideToMove(fen) === "white";
  return sans.map((san, index) => {
    const label = white ? number + "." : index === 0 ? number + "..." : "";
    number += white ? 0 : 1;
    white = !white;
    return label + san;
  });
}

/** The start position of Chess960 with this number, 0 to 959; 518 is that of standard chess. */
export function chess960Start(number) {
  const rank = Array(8).fill("");
  const put = (piece, place) => {
    const free = [...rank.keys()].filter((file) => rank[file] === "");
    rank[free[place]] = piece;
  };
  rank[2 * (number % 4) + 1] = "b";
  let rest = Math.floor(number / 4);
  rank[2 * (rest % 4)] = "b";
  rest = Math.floor(rest / 4);
  put("q", rest % 6);
  const knights = Math.floor(rest / 6);
  const pairs = [];
  for (let first = 0; first < 5; first += 1) {
    for (let second = first + 1; second < 5; second += 1) {
      pairs.push([first, second]);
    }
  }
  const [first, second] = pairs[knights];
  put("n", first);
  put("n", second - 1);
  for (const piece of "rkr") {
    put(piece, 0);
  }
  const black = rank.join("");
  return `${black}/pppppppp/8/8/8/8/PPPPPPPP/${black.toUpperCase()} w KQkq - 0 1`;
}
