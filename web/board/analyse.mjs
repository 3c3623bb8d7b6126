// What the engine thinks of the position that is shown, as long as it is shown.

import { find, on, setText } from "./dom.mjs";
import { Explanation } from "./explanation.mjs";
import { numbered } from "./fen.mjs";
import { LinesView } from "./lines_view.mjs";
import { scoreText, whiteShare } from "./uci.mjs";

const MOST_LINES = 5;
const MOST_MOVES = 14;
// Milliseconds between two drawings of the lines.
const PAUSE = 120;
// White's share of the points when a game is over.
const SHARES = { "1-0": 100, "0-1": 0, "1/2-1/2": 50 };

export class Analyse {
  #lines = [];
  // Those that are drawn, and what is written of them.
  #drawn = [];
  #texts = [];
  #info = {};
  #entered = false;
  // The position that the lines are of.
  #part = null;
  #position = null;
  #key = "";
  #timer = null;
  #drawing = 0;

  constructor(app) {
    this.app = app;
    this.explanation = new Explanation(app, () => this.#drawRows());
    this.view = new LinesView(app.texts, (index, step) => this.#step(index, step),
      (index) => this.explanation.aboutLine(this.#drawn[index], this.#texts[index][0]));
    for (let count = 1; count <= MOST_LINES; count += 1) {
      find("line-count").append(new Option(count, count));
    }
    const { lines } = app.settings;
    this.count = Number.isInteger(lines) && lines >= 1 && lines <= MOST_LINES ? lines : 3;
    this.running = app.settings.engine !== false;
    find("line-count").value = this.count;
    find("line-count").addEventListener("change", (event) => {
      this.count = Number(event.target.value);
      app.settings.lines = this.count;
      if (this.running) {
        this.#begin();
      }
    });
    on("engine-switch", () => this.#switch());
    this.#nameSwitch();
  }

  name() {
    this.#nameSwitch();
    if (this.#entered && this.#part) {
      this.#drawLines();
      this.explanation.name();
    }
  }

  enter() {
    this.#entered = true;
    if (this.running) {
      this.#key = "";
    } else if (this.#part) {
      this.explanation.enter();
    }
  }

  leave() {
    this.#entered = false;
    this.app.searcher.stop();
    this.explanation.leave();
    clearTimeout(this.#timer);
    this.#timer = null;
  }

  mayMove() {
    return true;
  }

  make(move) {
    return this.app.explore(move);
  }

  draw() {
    this.#tellBalance();
  }

  follow() {
    const { part, position } = this.app;
    const key = JSON.stringify(part);
    if (key !== this.#key) {
      this.#key = key;
      this.#part = part;
      this.#position = position;
      this.#begin();
      this.explanation.about(part, position);
    } else {
      this.#point();
    }
  }

  // The search.

  #switch() {
    this.running = !this.running;
    this.app.settings.engine = this.running;
    this.app.keep();
    if (this.running) {
      this.#begin();
    } else {
      // What was found so far stays.
      this.app.searcher.stop();
      this.#nameSwitch();
      this.#drawLines();
    }
  }

  #nameSwitch() {
    const key = this.running ? "engine.stop" : "engine.go";
    find("engine-switch").textContent = this.app.texts.get(key);
  }

  async #begin() {
    const { app } = this;
    this.#nameSwitch();
    this.#lines = [];
    this.#info = {};
    this.#drawLines();
    if (!this.running || this.#position.end) {
      app.searcher.stop();
      return;
    }
    const key = this.#key;
    const options = { MultiPV: this.count, UCI_LimitStrength: false };
    await app.searcher.search(this.#part, options, "infinite", (info) => {
      if (this.#key === key && this.#entered) {
        this.#hear(info);
      }
    });
  }

  #hear(info) {
    this.#info = { ...this.#info, ...info };
    if (info.moves.length && (info.mate !== undefined || info.centipawns !== undefined)) {
      this.#lines[info.line - 1] = { ...info, side: this.#position.side };
    }
    this.#timer ??= setTimeout(() => {
      this.#timer = null;
      this.#drawLines();
    }, PAUSE);
  }

  // What is seen.

  async #drawLines() {
    const number = ++this.#drawing;
    const key = this.#key;
    const lines = this.#lines.filter(Boolean);
    const sans = await Promise.all(lines.map((line) =>
      this.app.positions.sansOf(this.#part, line.moves.slice(0, MOST_MOVES))));
    if (number !== this.#drawing || this.#key !== key || !this.#entered) {
      return;
    }
    this.#drawn = lines;
    this.#texts = sans.map((each) =>
      numbered(this.#position.fen, this.app.texts.sans(each)));
    this.#drawRows();
    this.#tellEngine();
    this.#tellBalance();
    this.view.style(this.running && !this.#position.end ? this.count : 0, !this.running);
    this.#point();
  }

  #drawRows() {
    const { asked } = this.explanation;
    this.view.draw(this.#drawn.map((line, index) => ({ score: scoreText(line, line.side),
      moves: this.#texts[index], asked: line.moves[0] === asked })));
  }

  // Shows a line up to one of its moves.
  #step(index, step) {
    const { app } = this;
    const before = app.view.line.slice(0, app.view.step);
    const moves = this.#drawn[index].moves.slice(0, this.#texts[index].length);
    app.showLine(app.view.ply, [...before, ...moves], before.length + step + 1);
  }

  #point() {
    const best = this.#lines[0]?.moves[0];
    this.app.board.point(best
      ? [{ from: best.slice(0, 2), to: best.slice(2, 4), kind: "best" }] : []);
  }

  #tellEngine() {
    const { texts } = this.app;
    const { depth, speed, nodes } = this.#info;
    const number = new Intl.NumberFormat(texts.language);
    const values = { depth, speed: number.format(speed ?? 0), nodes: number.format(nodes ?? 0) };
    const key = this.#position.end ? "engine.end"
      : this.running ? (depth ? "engine.words" : "engine.begins")
        : depth ? "engine.stopped" : "engine.off";
    setText(find("engine-words"), texts.get(key, values));
  }

  #tellBalance() {
    const { app } = this;
    const { end } = app.position;
    const best = this.#lines[0];
    if (end || best) {
      app.balance(end ? SHARES[end.result] : whiteShare(best, best.side));
    }
  }
}
