// What is told of the records of a game: graph, accuracies, marks, and the move that is chosen.

import { changes, drawBars } from "./bars.mjs";
import { button, find, make, setText, typeset } from "./dom.mjs";
import { numbered, sideToMove } from "./fen.mjs";
import { partOf } from "./game.mjs";
import { GameGraph } from "./game_graph.mjs";
import { MARK_CLASSES } from "./moves_view.mjs";
import { sentenceOf } from "./sentences.mjs";
import { scoreText } from "./uci.mjs";

const MOST_MOVES = 12;

const points = ({ win, draw }) => (win + draw / 2) / 10;

/** White's share of the points to be expected, of a line of a record. */
const whitePoints = (line, { fen }) =>
  (sideToMove(fen) === "white" ? points(line) : 100 - points(line));

const shareOf = (record) => whitePoints(record, record);

function scoreOf({ centipawns, mate }, fen) {
  if (mate === 0) {
    return "#";
  }
  return scoreText(mate === null ? { centipawns } : { mate }, sideToMove(fen));
}

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
    const { texts } = this.app;
    // Where the language has no sentences of its own, they are the core's.
    find("sentence").lang = find("moments").lang =
      texts.has("sentence.best") ? texts.language : "en";
    this.graph.draw(records, wanted, marks, shareOf);
    this.#drawSides();
    this.#drawMoments();
    this.#drawMove();
  }

  #drawSides() {
    find("review-sides").replaceChildren(...["white", "black"].map((side) => this.#side(side)));
  }

  #side(side) {
    const { texts } = this.app;
    const judged = this.review.records
      .filter((record) => sideToMove(record.fen) === side && record.played?.judgement)
      .map((record) => record.played.judgement);
    const known = judged.map(({ accuracy }) => accuracy).filter((each) => each !== null);
    const sum = known.reduce((total, each) => total + each, 0);
    const number = new Intl.NumberFormat(texts.language,
      { minimumFractionDigits: 1, maximumFractionDigits: 1 });
    const mean = known.length ? number.format(sum / known.length) + " %" : "–";
    const counts = Object.entries(MARK_CLASSES).map(([mark, kind]) => {
      const name = texts.get("mark." + mark);
      const count = judged.filter((each) => each.mark === mark).length;
      return make("li", { title: name }, make("span", { class: "mark " + kind }, mark),
        ` ${count}`, make("span", { class: "unseen" }, " " + name));
    });
    return make("div", {}, make("span", { class: "faint small" }, texts.get(side)),
      make("p", {}, make("strong", {}, mean), " ", texts.get("accuracy")),
      make("ul", { class: "counts" }, ...counts));
  }

  // A move of the record's position with its number, as the language writes it.
  #label(record, san) {
    return numbered(record.fen, [this.app.texts.san(san)])[0];
  }

  #sentence(record) {
    const { texts } = this.app;
    return typeset(sentenceOf(texts, record, (san) => this.#label(record, san)));
  }

  #drawMoments() {
    const { records, marks } = this.review;
    find("moments").replaceChildren(...[...marks].map(([ply, mark]) => {
      const record = records[ply - 1];
      const label = this.#label(record, record.played.san);
      const sentence = this.#sentence(record);
      const begins = sentence.startsWith(label + " ");
      return make("li", {}, button(label, { class: "moment" }, () => this.app.go(ply)),
        make("span", { class: "mark " + MARK_CLASSES[mark] }, mark), " ",
        begins ? sentence.slice(label.length + 1) : sentence);
    }));
    find("moments-title").hidden = marks.size === 0;
    find("previous-mark").disabled = find("next-mark").disabled = marks.size === 0;
  }

  #drawMove() {
    const { app } = this;
    const { texts, view } = app;
    const { records } = this.review;
    const here = records[view.ply];
    this.graph.choose(view.ply, here && shareOf(here));
    if (here && !view.line.length) {
      app.balance(shareOf(here));
    }
    const record = view.ply > 0 ? records[view.ply - 1] : null;
    const judgement = record?.played?.judgement;
    find("review-move").hidden = !judgement;
    app.board.point([]);
    if (!judgement) {
      return;
    }
    const { mark } = judgement;
    const name = mark ? " – " + texts.get("mark." + mark) : "";
    setText(find("headline"), this.#label(record, record.played.san) + mark + name);
    find("headline").className = mark ? MARK_CLASSES[mark] : "";
    setText(find("sentence"), this.#sentence(record));
    this.#drawLines(record);
  }

  // The best line and the one of the move that was played, and what is between them.
  #drawLines(record) {
    const { app } = this;
    const { texts, view } = app;
    const best = record.lines[0];
    const { line, move } = record.played;
    const isBest = best?.moves.split(" ")[0] === move;
    const lines = [];
    if (best) {
      lines.push(this.#line(texts.get(isBest ? "line.both" : "line.best"), record, best));
    }
    if (line && !isBest) {
      lines.push(this.#line(texts.get("line.played"), record, line));
      if (!view.line.length) {
        const [from, to] = [best.moves.slice(0, 2), best.moves.slice(2, 4)];
        app.board.point([{ from, to, kind: "best" }]);
      }
    }
    find("review-lines").replaceChildren(...lines);
    this.#drawDifference(view.ply, record, isBest ? null : best, line);
  }

  #line(title, record, line) {
    const { app } = this;
    const ply = app.view.ply - 1;
    const moves = line.moves.split(" ").slice(0, MOST_MOVES);
    const sans = app.texts.sans(line.san.split(" ").slice(0, MOST_MOVES));
    const share = Math.round(whitePoints(line, record));
    return make("p", { class: "line" }, make("strong", {}, title),
      ` ${scoreOf(line, record.fen)}, ${share}\u00a0%: `,
      ...numbered(record.fen, sans).flatMap((text, index) =>
        [button(text, {}, () => app.showLine(ply, moves, index + 1)), " "]));
  }

  // What the move gave away or won against the best one: the terms of both leaves.
  async #drawDifference(ply, record, best, played) {
    const { app } = this;
    const { texts } = app;
    let groups = null;
    if (best?.leaf && played?.leaf) {
      if (!this.#differences.has(ply)) {
        this.#differences.set(ply, this.#difference(ply, best, played));
      }
      groups = await this.#differences.get(ply).catch(() => null);
      if (app.view.ply !== ply) {
        return;
      }
    }
    find("difference-part").hidden = !groups;
    if (groups) {
      const [one, other] = [record.played.san, best.san.split(" ")[0]];
      setText(find("difference-words"), texts.get("difference.words", { played: texts.san(one),
        best: texts.san(other), side: texts.get(sideToMove(record.fen)) }));
      drawBars(find("difference"), texts, groups, ["gain", "losing"]);
    }
  }

  async #difference(ply, best, played) {
    const { core, game } = this.app;
    const part = partOf(game, ply - 1);
    const leafOf = (line) =>
      core.ask({ ask: "leaf", ...part, line: line.moves.split(" "), score: line.score });
    const [root, one, other] = await Promise.all(
      [core.ask({ ask: "evaluation", ...part }), leafOf(best), leafOf(played)]);
    return one.leaf && other.leaf
      ? changes(root, one.leaf.evaluation, other.leaf.evaluation) : null;
  }
}
