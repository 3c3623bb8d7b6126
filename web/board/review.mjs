// A game looked through move by move, as orvelin-analyse does: the core makes the very records of
// the command line, and this tells what is in them.

import { drawBars } from "./bars.mjs";
import { BoardCore } from "./core.mjs";
import { button, find, make, on, setText, typeset } from "./dom.mjs";
import { numbered, sideToMove } from "./fen.mjs";
import { partOf } from "./game.mjs";
import { GameGraph } from "./game_graph.mjs";
import { MARK_CLASSES } from "./moves_view.mjs";
import { scoreText } from "./uci.mjs";

const DEPTHS = [6, 8, 10, 12, 14];
const USUAL_DEPTH = 10;
const MOST_MOVES = 12;
// All that the marks of orvelin-analyse need, the only good moves among them.
const SEARCH = "best,played,rest";

const uciScore = ({ centipawns, mate }) => (mate === null ? { centipawns } : { mate });
const points = ({ win, draw }) => (win + draw / 2) / 10;

/** White's share of the points to be expected, of a record. */
const shareOf = (record) => (sideToMove(record.fen) === "white" ? points(record) : 100 - points(record));

const scoreOf = (score, fen) => (score.mate === 0 ? "#" : scoreText(uciScore(score), sideToMove(fen)));

export class Review {
  // By the half-move behind which the position stands, as far as they are made.
  records = [];
  marks = new Map();
  #core = null;
  #run = 0;
  #key = "";
  #differences = new Map();

  constructor(app) {
    this.app = app;
    this.graph = new GameGraph(app, (ply) => app.go(ply));
    const depth = find("review-depth");
    depth.append(...DEPTHS.map((each) => new Option(each, each)));
    depth.value = DEPTHS.includes(app.settings.depth) ? app.settings.depth : USUAL_DEPTH;
    depth.addEventListener("change", () => {
      app.settings.depth = Number(depth.value);
      app.keep();
    });
    on("review-go", () => (this.running ? this.stop() : this.begin()));
    on("next-mark", () => this.#toMark(1));
    on("previous-mark", () => this.#toMark(-1));
  }

  get running() {
    return this.#core !== null;
  }

  name() {
    this.graph.name();
  }

  enter() {
    this.name();
  }

  // A review goes on while another tab is open.
  leave() {
    this.app.board.point([]);
  }

  follow() {}

  forget() {
    this.stop();
    this.records = [];
    this.marks = new Map();
    this.#differences.clear();
    this.#key = "";
  }

  mayMove() {
    return !this.app.modes.play.running || this.app.view.line.length > 0 || !this.app.atEnd;
  }

  make(move) {
    return this.app.explore(move);
  }

  // Making the records.

  async begin() {
    const { app } = this;
    const { game } = app;
    if (game.moves.length === 0) {
      return;
    }
    this.forget();
    const run = ++this.#run;
    const depth = Number(find("review-depth").value);
    this.depth = depth;
    const core = new BoardCore();
    this.#core = core;
    this.#key = JSON.stringify(partOf(game));
    this.draw();
    try {
      for (let ply = 0; ply <= game.moves.length; ply += 1) {
        const record = await core.ask({ ask: "record", ...partOf(game), ply, limit: { depth }, lines: 1, search: SEARCH,
          tags: game.tags, result: game.result });
        if (run !== this.#run) {
          return;
        }
        if (record.error) {
          throw new Error(record.error);
        }
        this.#take(record);
      }
      app.say(app.texts.get("review.done"));
    } catch (error) {
      if (run === this.#run) {
        app.tell(String(error.message ?? error));
      }
    }
    if (run === this.#run) {
      this.stop();
    }
  }

  stop() {
    this.#run += 1;
    this.#core?.close();
    this.#core = null;
    if (this.app.position) {
      this.draw();
    }
  }

  #take(record) {
    this.records.push(record);
    const mark = record.played?.judgement?.mark;
    if (mark) {
      this.marks.set(this.records.length, mark);
    }
    this.app.drawWords();
    this.draw();
  }

  // Showing them.

  draw() {
    const { app } = this;
    const { texts, game } = app;
    // A game that has gone on since has positions of which nothing is known.
    if (this.#key && !this.running && this.#key !== JSON.stringify(partOf(game))) {
      this.records = [];
      this.marks = new Map();
      this.#key = "";
    }
    const wanted = game.moves.length + 1;
    const done = this.records.length;
    setText(find("review-go"), texts.get(this.running ? "review.stop" : "review.go"));
    find("review-go").disabled = game.moves.length === 0;
    find("review-go").classList.toggle("main", !this.running && done === 0);
    find("review-depth").disabled = this.running;
    find("review-progress").hidden = !this.running;
    find("review-progress").max = wanted;
    find("review-progress").value = done;
    const words = this.running ? "review.runs" : done === 0 ? (game.moves.length ? "review.first" : "review.empty")
      : done < wanted ? "review.part" : "review.how";
    setText(find("review-words"), texts.get(words, { done, wanted, depth: this.depth }));
    find("review-result").hidden = done === 0;
    if (done > 0 && app.mode === "review") {
      this.graph.draw(this.records, wanted, this.marks, shareOf);
      this.#drawSides();
      this.#drawMoments();
      this.#drawMove();
    }
  }

  #judged(side) {
    return this.records.filter((record) => sideToMove(record.fen) === side && record.played?.judgement)
      .map((record) => record.played.judgement);
  }

  #drawSides() {
    const { texts } = this.app;
    find("review-sides").replaceChildren(...["white", "black"].map((side) => {
      const judged = this.#judged(side);
      const known = judged.map(({ accuracy }) => accuracy).filter((each) => each !== null);
      const mean = known.length ? (known.reduce((sum, each) => sum + each, 0) / known.length).toFixed(1) + " %" : "–";
      const counts = Object.entries(MARK_CLASSES).map(([mark, kind]) => make("li", { title: texts.get("mark." + mark) },
        make("span", { class: "mark " + kind }, mark), ` ${judged.filter((each) => each.mark === mark).length}`,
        make("span", { class: "unseen" }, " " + texts.get("mark." + mark))));
      return make("div", {}, make("span", { class: "faint small" }, texts.get(side)), make("p", {},
        make("strong", {}, mean), " ", texts.get("accuracy")), make("ul", { class: "counts" }, ...counts));
    }));
  }

  #labelOf(record) {
    return numbered(record.fen, [record.played.san])[0];
  }

  #drawMoments() {
    const marked = [...this.marks].map(([ply, mark]) => [ply, mark, this.records[ply - 1]]);
    find("moments").replaceChildren(...marked.map(([ply, mark, record]) => {
      const label = this.#labelOf(record);
      const sentence = record.played.judgement.sentence;
      const rest = sentence.startsWith(label + " ") ? sentence.slice(label.length + 1) : sentence;
      return make("li", {}, button(label, { class: "moment" }, () => this.app.go(ply)),
        make("span", { class: "mark " + MARK_CLASSES[mark] }, mark), " ", typeset(rest));
    }));
    find("moments-title").hidden = marked.length === 0;
    find("previous-mark").disabled = find("next-mark").disabled = marked.length === 0;
  }

  #toMark(direction) {
    const { ply } = this.app.view;
    const marked = [...this.marks.keys()].sort((a, b) => direction * (a - b));
    const next = marked.find((each) => direction * (each - ply) > 0);
    if (next) {
      this.app.go(next);
    }
  }

  #drawMove() {
    const { app } = this;
    const { texts, view } = app;
    const here = this.records[view.ply];
    this.graph.choose(view.ply, here && shareOf(here));
    if (here && !view.line.length) {
      app.balance(shareOf(here));
    }
    const record = view.ply > 0 ? this.records[view.ply - 1] : null;
    const judgement = record?.played?.judgement;
    find("review-move").hidden = !judgement;
    app.board.point([]);
    if (!judgement) {
      return;
    }
    const { mark } = judgement;
    const name = mark ? " – " + texts.get("mark." + mark) : "";
    setText(find("headline"), this.#labelOf(record) + mark + name);
    find("headline").className = mark ? MARK_CLASSES[mark] : "";
    setText(find("sentence"), typeset(judgement.sentence));
    const best = record.lines[0];
    const { line, move } = record.played;
    const isBest = best?.moves.split(" ")[0] === move;
    const lines = [];
    if (best) {
      lines.push(this.#line(texts.get(isBest ? "line.both" : "line.best"), record, best, view.ply - 1));
    }
    if (line && !isBest) {
      lines.push(this.#line(texts.get("line.played"), record, line, view.ply - 1));
      if (!view.line.length) {
        const [from, to] = [best.moves.slice(0, 2), best.moves.slice(2, 4)];
        app.board.point([{ from, to, kind: "best" }]);
      }
    }
    find("review-lines").replaceChildren(...lines);
    this.#drawDifference(view.ply, record, isBest ? null : best, line);
  }

  #line(title, record, line, ply) {
    const side = sideToMove(record.fen);
    const share = side === "white" ? points(line) : 100 - points(line);
    const moves = line.moves.split(" ").slice(0, MOST_MOVES);
    const texts = numbered(record.fen, line.san.split(" ").slice(0, MOST_MOVES));
    return make("p", { class: "line" }, make("strong", {}, title), ` ${scoreOf(line, record.fen)}, ${Math.round(share)}\u00a0%: `,
      ...texts.flatMap((text, index) => [button(text, {}, () => this.app.showLine(ply, moves, index + 1)), " "]));
  }

  // What the move gave away or won against the best one: the terms of both leaves.
  async #drawDifference(ply, record, best, played) {
    const place = find("difference");
    let groups = null;
    if (best?.leaf && played?.leaf) {
      if (!this.#differences.has(ply)) {
        this.#differences.set(ply, this.#difference(ply, best, played));
      }
      groups = await this.#differences.get(ply).catch(() => null);
      if (this.app.view.ply !== ply) {
        return;
      }
    }
    find("difference-part").hidden = !groups;
    if (groups) {
      setText(find("difference-words"), this.app.texts.get("difference.words",
        { played: record.played.san, best: best.san.split(" ")[0], side: this.app.texts.get(sideToMove(record.fen)) }));
      drawBars(place, this.app.texts, groups, ["gain", "losing"]);
    }
  }

  async #difference(ply, best, played) {
    const { core, game } = this.app;
    const part = partOf(game, ply - 1);
    const leafOf = (line) => core.ask({ ask: "leaf", ...part, line: line.moves.split(" "), score: line.score });
    const [root, one, other] = await Promise.all([core.ask({ ask: "evaluation", ...part }), leafOf(best), leafOf(played)]);
    if (!one.leaf || !other.leaf) {
      return null;
    }
    const sign = sideToMove(root.fen) === "white" ? 1 : -1;
    const less = (a, b) => (sign * (a.units - b.units)) / root.pawn;
    return other.leaf.evaluation.groups.map((group, index) => {
      const before = one.leaf.evaluation.groups[index];
      const terms = group.terms.map((term, place) => ({ ...term, value: less(term, before.terms[place]) }));
      return { ...group, value: less(group, before), terms };
    });
  }
}
