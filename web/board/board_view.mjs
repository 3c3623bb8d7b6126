// The board: 64 cells that screen readers and keys go through, pieces above them, arrows on top.
// It knows no rules: what can be moved and to where is asked of who owns it.

import { BoardInput } from "./board_input.mjs";
import { drawn, make } from "./dom.mjs";
import { boardOf, FILES, isWhite, nameOf, squareOf } from "./fen.mjs";

export class BoardView {
  #texts;
  cells = [];
  #pieces = new Map();
  #board = Array(64).fill(".");
  #flipped = false;
  #selected = null;
  #marks = {};
  #arrows = [];

  /**
   * @param root the element that becomes the board.
   * @param hooks `targets(square)` tells the names of the squares that the piece there can go to,
   * or null where it cannot be moved; `move(from, to)` is called for a choice among them;
   * `refused()`, if there is one, for a piece that was pressed and cannot be moved;
   * `dropped(from)`, if there is one, for a piece that was drawn off the board, and
   * `clicked(square)`, if there is one, takes clicks instead.
   */
  constructor(root, texts, hooks) {
    this.root = root;
    this.#texts = texts;
    this.hooks = hooks;
    root.setAttribute("role", "grid");
    for (let row = 0; row < 8; row += 1) {
      const line = make("div", { role: "row", class: "row" });
      for (let column = 0; column < 8; column += 1) {
        const place = 8 * row + column;
        const cell = make("div", { role: "gridcell", class: "cell", tabindex: place ? -1 : 0 });
        cell.classList.add((row + column) % 2 ? "dark" : "light");
        this.cells.push(cell);
        line.append(cell);
      }
      root.append(line);
    }
    this.layer = make("div", { class: "pieces", "aria-hidden": "true" });
    this.arrows = drawn("svg", { class: "arrows", viewBox: "0 0 8 8", "aria-hidden": "true" });
    root.append(this.layer, this.arrows);
    this.input = new BoardInput(this);
  }

  get selected() {
    return this.#selected;
  }

  /**
   * Shows a position. `last` has the names of the squares of the last move, `check` is that of a
   * king in check.
   */
  draw(fen, { flipped = false, last = [], check = null } = {}) {
    const turned = flipped !== this.#flipped;
    this.#flipped = flipped;
    this.#marks = { last, check };
    this.select(null);
    this.#place(boardOf(fen), turned);
    if (turned) {
      this.point(this.#arrows);
    }
    this.#name();
  }

  /** Names the cells anew, as after a change of language. */
  rename() {
    this.#name();
  }

  /** Arrows as {from, to, kind}. */
  point(arrows) {
    this.#arrows = arrows;
    this.arrows.replaceChildren(...arrows.map(({ from, to, kind }) => this.#arrow(from, to, kind)));
  }

  select(square) {
    this.#selected = square;
    const targets = square ? this.hooks.targets(square) : null;
    this.cells.forEach((cell, place) => {
      const name = this.nameAt(place);
      cell.classList.toggle("selected", name === square);
      cell.classList.toggle("target", Boolean(targets?.includes(name)));
      cell.classList.toggle("taken", this.#board[squareOf(name)] !== ".");
      cell.ariaSelected = String(name === square);
    });
    this.#name();
  }

  // Places are counted from the upper left corner as it is seen.
  #placeOf(square) {
    const seen = this.#flipped ? 63 - square : square;
    return 8 * (7 - Math.floor(seen / 8)) + (seen % 8);
  }
  #squareAt(place) {
    const seen = 8 * (7 - Math.floor(place / 8)) + (place % 8);
    return this.#flipped ? 63 - seen : seen;
  }
  nameAt(place) {
    return nameOf(this.#squareAt(place));
  }

  pieceOn(name) {
    return this.#pieces.get(squareOf(name));
  }

  // Pieces that are on the board already go to their new squares; only what is new is made.
  #place(board, turned) {
    const left = [];
    for (const [square, piece] of [...this.#pieces]) {
      if (piece.dataset.piece !== board[square]) {
        left.push([square, piece]);
        this.#pieces.delete(square);
      } else if (turned) {
        this.put(piece, square);
      }
    }
    board.forEach((letter, square) => {
      if (letter === "." || this.#pieces.has(square)) {
        return;
      }
      const index = left.findIndex(([, piece]) => piece.dataset.piece === letter);
      const piece = index < 0 ? this.#newPiece(letter, square) : left.splice(index, 1)[0][1];
      this.#pieces.set(square, piece);
      this.put(piece, square);
    });
    left.forEach(([, piece]) => piece.remove());
    this.#board = board;
  }

  #newPiece(letter, square) {
    const piece = drawn("svg", { class: "piece", viewBox: "0 0 40 40", "data-piece": letter });
    piece.append(drawn("use", { href: "#piece-" + letter }));
    this.put(piece, square);
    this.layer.append(piece);
    return piece;
  }

  put(piece, square) {
    const place = this.#placeOf(square);
    piece.style.transform = `translate(${100 * (place % 8)}%, ${100 * Math.floor(place / 8)}%)`;
    piece.dataset.square = nameOf(square);
  }

  #name() {
    const targets = this.#selected ? this.hooks.targets(this.#selected) : null;
    this.cells.forEach((cell, place) => {
      const name = this.nameAt(place);
      const letter = this.#board[squareOf(name)];
      const words = [letter === "." ? this.#texts.get("square.empty", { square: name })
        : this.#texts.get("square.piece",
          { square: name, piece: this.#texts.get("piece." + letter) })];
      if (name === this.#marks.check) {
        words.push(this.#texts.get("say.check"));
      }
      if (targets?.includes(name)) {
        words.push(this.#texts.get("square.target"));
      }
      cell.dataset.square = name;
      cell.ariaLabel = words.join(", ");
      cell.classList.toggle("moved", this.#marks.last?.includes(name) ?? false);
      cell.classList.toggle("check", name === this.#marks.check);
      // The letters at the edges of the board.
      cell.dataset.rank = place % 8 === 0 ? name[1] : "";
      cell.dataset.file = place >= 56 ? name[0] : "";
    });
  }

  #arrow(from, to, kind) {
    const middle = (name) => {
      const place = this.#placeOf(squareOf(name));
      return [(place % 8) + 0.5, Math.floor(place / 8) + 0.5];
    };
    const [x1, y1] = middle(from);
    const [x2, y2] = middle(to);
    const length = Math.hypot(x2 - x1, y2 - y1) || 1;
    const [dx, dy] = [(x2 - x1) / length, (y2 - y1) / length];
    const at = (along, across) =>
      `${(x1 + dx * along - dy * across).toFixed(3)},${(y1 + dy * along + dx * across).toFixed(3)}`;
    const neck = length - 0.38;
    const points = [at(0.28, 0.09), at(neck, 0.09), at(neck, 0.24), at(length - 0.06, 0),
      at(neck, -0.24), at(neck, -0.09), at(0.28, -0.09)];
    return drawn("polygon", { class: "arrow " + kind, points: points.join(" ") });
  }
}

export const isOwn = (fen, square, side) => {
  const piece = boardOf(fen)[squareOf(square)];
  return piece !== "." && isWhite(piece) === (side === "white");
};

export const kingOf = (fen, side) =>
  nameOf(boardOf(fen).indexOf(side === "white" ? "K" : "k"));

