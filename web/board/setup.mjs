// The editor of positions: pieces are put and drawn by hand or by keys, and the core says whether
// what comes out is a position.

import { BoardView } from "./board_view.mjs";
import { openBox } from "./dialogs.mjs";
import { button, make, setText } from "./dom.mjs";
import { boardOf, nameOf, placementOf, squareOf, START } from "./fen.mjs";
import { emptyGame } from "./game.mjs";
import { Palette } from "./palette.mjs";

const RIGHTS = "KQkq";
const EVERYWHERE = [...Array(64).keys()].map(nameOf);

class Editor {
  constructor(app, box, close) {
    this.app = app;
    this.texts = app.texts;
    const squares = make("div", { class: "squares", "aria-label": this.texts.get("board") });
    this.hooks = {
      targets: (square) => (this.board[squareOf(square)] === "." ? null : EVERYWHERE),
      move: (from, to) => this.#change(() => {
        this.board[squareOf(to)] = this.board[squareOf(from)];
        this.board[squareOf(from)] = ".";
      }),
      dropped: (from) => this.#change(() => (this.board[squareOf(from)] = ".")),
    };
    this.view = new BoardView(squares, this.texts, this.hooks);
    this.fen = make("input", { type: "text", "aria-label": this.texts.get("setup.fen"),
      spellcheck: "false", class: "fen" });
    this.fen.addEventListener("input", () => this.#read(this.fen.value));
    this.wrong = make("p", { class: "wrong small", role: "status" });
    this.done = button(this.texts.get("setup.done"), { class: "main" }, () => this.#finish(close));
    const clear = (fen) => () => this.#read(fen);
    const palette = new Palette(this.texts, (tool) => this.#choose(tool),
      (tool, event) => this.#drop(tool, event));
    box.append(squares, palette.root, this.#fields(), this.fen, this.wrong);
    box.append(make("p", { class: "buttons" }, this.done,
      button(this.texts.get("setup.start"), {}, clear(START)),
      button(this.texts.get("setup.clear"), {}, clear("8/8/8/8/8/8/8/8 w - - 0 1")),
      button(this.texts.get("cancel"), {}, () => close(null))));
    this.#read(app.position.fen);
  }

  #choose(tool) {
    if (tool) {
      this.hooks.clicked = (square) => {
        const there = this.board[squareOf(square)] === tool;
        this.#put(there ? "x" : tool, square);
      };
    } else {
      delete this.hooks.clicked;
    }
  }

  #put(tool, square) {
    this.#change(() => (this.board[squareOf(square)] = tool === "x" ? "." : tool));
  }

  #drop(tool, event) {
    const square = this.view.input.squareAt(event);
    if (square) {
      this.#put(tool, square);
    }
  }

  #fields() {
    this.side = make("select", {});
    const { texts } = this;
    this.side.append(new Option(texts.get("white"), "w"), new Option(texts.get("black"), "b"));
    this.rights = [...RIGHTS].map((letter) => {
      const box = make("input", { type: "checkbox" });
      box.addEventListener("change", () => this.#change(() => {}));
      return box;
    });
    this.chess960 = make("input", { type: "checkbox" });
    this.chess960.checked = this.app.game.chess960;
    this.side.addEventListener("change", () => this.#change(() => {}));
    this.chess960.addEventListener("change", () => this.#check());
    const castling = make("fieldset", { class: "choice" },
      make("legend", {}, texts.get("setup.castling")), ...this.rights.map((box, index) =>
        make("label", {}, box, make("span", {}, texts.get("setup." + RIGHTS[index])))));
    return make("div", { class: "fields" },
      make("label", {}, make("span", {}, texts.get("setup.side")), this.side),
      castling, make("label", { class: "inline" }, this.chess960, make("span", {}, "Chess960")));
  }

  // What was done by hand goes into the FEN.
  #change(action) {
    action();
    const rights = [...RIGHTS].filter((letter, index) => this.rights[index].checked).join("")
      || "-";
    this.fen.value = `${placementOf(this.board)} ${this.side.value} ${rights} - 0 1`;
    this.view.draw(this.fen.value);
    this.#check();
  }

  // And what the FEN says onto the board.
  #read(fen) {
    this.fen.value = fen;
    const fields = fen.trim().split(/\s+/);
    this.board = boardOf(fields[0] ?? "");
    this.side.value = fields[1] === "b" ? "b" : "w";
    this.rights.forEach((box, index) => (box.checked = (fields[2] ?? "-").includes(RIGHTS[index])));
    this.view.draw(fen);
    this.#check();
  }

  async #check() {
    const part = { start: this.fen.value.trim(), chess960: this.chess960.checked, moves: [] };
    this.answer = null;
    const answer = await this.app.positions.of(part);
    if (this.fen.value.trim() === part.start && this.chess960.checked === part.chess960) {
      this.answer = answer.error ? null : answer;
      setText(this.wrong, answer.error ?? "");
      this.done.disabled = Boolean(answer.error);
    }
  }

  async #finish(close) {
    if (this.answer) {
      close(emptyGame(this.answer.fen, this.chess960.checked));
    }
  }
}

/** Shows the editor, and then the position that was made. */
export async function showSetup(app) {
  const game = await openBox(app.texts, app.texts.get("setup.title"), (box, close) => {
    box.classList.add("setup");
    return new Editor(app, box, close);
  });
  if (game && (await app.mayLose())) {
    app.modes.play.form.fromBoard();
    await app.load(game);
  }
}
