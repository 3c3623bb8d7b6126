// What is told of the records of a game: graph, accuracies, marks, and the move that is chosen.

import { drawBars } from "./bars.mjs";
import { button, find, make, setText, typeset } from "./dom.mjs";
import { numbered, sideToMove } from "./fen.mjs";
import { partOf } from "./game.mjs";
import { GameGraph } from "./game_graph.mjs";
import { MARK_CLASSES } from "./moves_view.mjs";
import { scoreText } from "./uci.mjs";

const MOST_MOVES = 12;

const uciScore = ({ centipawns, mate }) => (mate === null ? { centipawns } : { mate });
const points = ({ win, draw }) => (win + draw / 2) / 10;

/** White's share of the points to be expected, of a record. */
const shareOf = (record) => (sideToMove(record.fen) === "white" ? points(record) : 100 - points(record));

const scoreOf = (score, fen) => (score.mate === 0 ? "#" : scoreText(uciScore(score), sideToMove(fen)));

export class ReviewView {
  #differences = new Map();

  /** @param review has the records and the marks. */
  constructor(app, review) {
    this.app = app;
    this.review = review;
    this.graph = new GameGraph(app, (ply) => app.go(ply));
  }

  name() {
    this.graph.name();
  }

  forget() {
    this.#differences.clear();
  }

  /** @param wanted how many positions the game has. */
  draw(wanted) {
    const { records, marks } = this.review;
    this.graph.draw(records, wanted, marks, shareOf);
    this.#drawSides();
    this.#drawMoments();
    this.#drawMove();
  }

  #judged(side) {
    return this.review.records.filter((record) => sideToMove(record.fen) === side && record.played?.judgement)
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
    const marked = [...this.review.marks].map(([ply, mark]) => [ply, mark, this.review.records[ply - 1]]);
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

  #drawMove() {
    const { app } = this;
    const { texts, view } = app;
    const here = this.review.records[view.ply];
    this.graph.choose(view.ply, here && shareOf(here));
    if (here && !view.line.length) {
      app.balance(shareOf(here));
    }
    const record = view.ply > 0 ? this.review.records[view.ply - 1] : null;
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
