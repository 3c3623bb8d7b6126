// What the engine thinks of the position that is shown, as long as it is shown.

import { drawBars } from "./bars.mjs";
import { button, find, make, on, setText } from "./dom.mjs";
import { Ending } from "./ending.mjs";
import { numbered } from "./fen.mjs";
import { scoreText, whiteShare } from "./uci.mjs";

const MOST_LINES = 5;
const MOST_MOVES = 14;
// Milliseconds between two drawings of the lines.
const PAUSE = 120;

const percent = (share) => (share < 0.005 ? "<1" : Math.round(100 * share));

export class Analyse {
  #lines = [];
  #info = {};
  #entered = false;
  #key = "";
  #timer = null;
  #drawing = 0;
  // The first move of the line whose leaf is shown.
  #asked = null;

  constructor(app) {
    this.app = app;
    for (let count = 1; count <= MOST_LINES; count += 1) {
      find("line-count").append(new Option(count, count));
    }
    this.ending = new Ending(app);
    const { lines } = app.settings;
    this.count = Number.isInteger(lines) && lines >= 1 && lines <= MOST_LINES ? lines : 3;
    this.running = app.settings.engine !== false;
    find("line-count").value = this.count;
    find("line-count").addEventListener("change", (event) => {
      this.count = Number(event.target.value);
      app.settings.lines = this.count;
      this.#begin();
    });
    on("engine-switch", () => {
      this.running = !this.running;
      app.settings.engine = this.running;
      app.keep();
      this.#begin();
    });
    on("of-position", () => this.#explain());
    this.name();
  }

  name() {
    find("engine-switch").textContent = this.app.texts.get(this.running ? "engine.stop" : "engine.go");
  }

  enter() {
    this.#entered = true;
    this.#key = "";
  }

  leave() {
    this.#entered = false;
    this.app.searcher.stop();
    this.ending.leave();
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
    const key = JSON.stringify(this.app.part);
    if (key !== this.#key) {
      this.#key = key;
      this.#begin();
      this.#explain();
    }
  }

  // The search.

  async #begin() {
    const { app } = this;
    this.name();
    this.#lines = [];
    this.#info = {};
    this.#drawLines();
    app.board.point([]);
    if (!this.running || app.position.end) {
      app.searcher.stop();
      return;
    }
    const { part, position } = app;
    const options = { MultiPV: this.count, UCI_LimitStrength: false };
    await app.searcher.search(part, options, "infinite", (info) => {
      if (app.part === part && this.#entered) {
        this.#hear(info, position);
      }
    });
  }

  #hear(info, position) {
    this.#info = { ...this.#info, ...info };
    if (info.moves.length && (info.mate !== undefined || info.centipawns !== undefined)) {
      this.#lines[info.line - 1] = { ...info, side: position.side };
    }
    this.#timer ??= setTimeout(() => {
      this.#timer = null;
      this.#drawLines();
    }, PAUSE);
  }

  async #drawLines() {
    const { app } = this;
    const { part, position } = app;
    const number = ++this.#drawing;
    const lines = this.#lines.filter(Boolean);
    const sans = await Promise.all(lines.map((line) => app.positions.sansOf(part, line.moves.slice(0, MOST_MOVES))));
    if (number !== this.#drawing || app.part !== part || !this.#entered) {
      return;
    }
    this.#tellEngine();
    this.#tellBalance();
    const focused = document.activeElement?.dataset?.step !== undefined && find("lines").contains(document.activeElement)
      ? { ...document.activeElement.dataset } : null;
    find("lines").replaceChildren(...lines.map((line, index) => this.#row(line, sans[index], index)));
    if (focused) {
      find("lines").querySelector(`[data-line="${focused.line}"][data-step="${focused.step}"]`)?.focus();
    }
    find("lines").style.minHeight = this.running && !position.end ? `${2.1 * this.count}em` : "";
    app.board.point(lines.slice(0, 1).map(({ moves }) =>
      ({ from: moves[0].slice(0, 2), to: moves[0].slice(2, 4), kind: "best" })));
  }

  #row(line, sans, index) {
    const { app } = this;
    const score = make("strong", { class: "score" }, scoreText(line, line.side));
    const moves = numbered(app.position.fen, sans).flatMap((text, place) => [
      button(text, { "data-line": index, "data-step": place + 1 }, () => {
        const before = app.view.line.slice(0, app.view.step);
        app.showLine(app.view.ply, [...before, ...line.moves.slice(0, sans.length)], before.length + place + 1);
      }), " "]);
    const why = button(app.texts.get("why"), { class: "why", "data-line": index, "data-step": "why",
      "aria-pressed": String(this.#asked === line.moves[0]), title: app.texts.get("why.title"),
      "aria-label": `${app.texts.get("why")} ${sans[0]}` }, () => this.#explainLine(line, sans));
    return make("li", { class: "line" }, score, why, make("span", { class: "run" }, ...moves));
  }

  #tellEngine() {
    const { app } = this;
    const { texts } = app;
    const { depth, speed, nodes } = this.#info;
    if (app.position.end) {
      setText(find("engine-words"), texts.get("engine.end"));
    } else if (!this.running) {
      setText(find("engine-words"), texts.get("engine.off"));
    } else if (depth) {
      const number = new Intl.NumberFormat(texts.language);
      setText(find("engine-words"), texts.get("engine.words",
        { depth, speed: number.format(speed ?? 0), nodes: number.format(nodes ?? 0) }));
    } else {
      setText(find("engine-words"), texts.get("engine.begins"));
    }
  }

  #tellBalance() {
    const { app } = this;
    const { end } = app.position;
    const best = this.#lines[0];
    if (end || best) {
      const share = end ? { "1-0": 100, "0-1": 0, "1/2-1/2": 50 }[end.result] : whiteShare(best, best.side);
      app.balance(share);
    }
  }

  // What is known without a search.

  async #explain() {
    const { app } = this;
    const { part, position } = app;
    this.#askAbout(null);
    this.ending.offer(part, position);
    const [evaluation, book] = await Promise.all(["evaluation", "book"].map((ask) =>
      app.core.ask({ ask, ...part }).catch((error) => ({ error: String(error) }))));
    if (app.part !== part || !this.#entered || this.#asked) {
      return;
    }
    this.#tellEvaluation(evaluation, app.texts.get("evaluation.words"));
    this.#tellBook(book, position);
  }

  // The position behind a line whose evaluation is the line's score.
  async #explainLine(line, sans) {
    const { app } = this;
    const { part } = app;
    const { texts } = app;
    this.#askAbout(line.moves[0]);
    const answer = line.mate !== undefined ? { why: "mate or draw" }
      : await app.core.ask({ ask: "leaf", ...part, line: line.moves, cp: line.centipawns })
        .catch((error) => ({ error: String(error) }));
    if (app.part !== part || this.#asked !== line.moves[0]) {
      return;
    }
    if (answer.leaf) {
      const moves = numbered(app.position.fen, answer.leaf.sans).join(" ");
      this.#tellEvaluation(answer.leaf.evaluation, texts.get("evaluation.leaf", { moves: moves || sans[0] }));
    } else {
      const reason = texts.has("leaf." + answer.why) ? texts.get("leaf." + answer.why) : answer.error ?? answer.why;
      this.#tellEvaluation({}, reason);
    }
  }

  #askAbout(move) {
    this.#asked = move;
    find("of-position").hidden = move === null;
    find("lines").querySelectorAll(".why").forEach((each) =>
      (each.ariaPressed = String(this.#lines[each.dataset.line]?.moves[0] === move)));
  }

  #tellEvaluation({ groups, error }, words) {
    setText(find("chart-words"), groups ? words : error ?? words);
    if (groups) {
      drawBars(find("bars"), this.app.texts, groups, ["for-white", "for-black"]);
    } else {
      find("bars").replaceChildren();
    }
  }

  #tellBook(book, position) {
    const moves = book?.moves ?? [];
    const sum = moves.reduce((total, { weight }) => total + weight, 0);
    const rows = moves.flatMap((move) => [button(move.san, { class: "book-move" }, () => {
      const legal = position.legal.find(({ uci }) => uci === move.uci);
      if (legal) {
        this.app.explore(legal);
      }
    }), make("span", { class: "faint small" }, ` ${percent(move.weight / sum)}\u00a0% `)]);
    find("book").replaceChildren(...(rows.length ? [make("h2", {}, this.app.texts.get("book")), make("p", {}, ...rows)] : []));
  }
}
