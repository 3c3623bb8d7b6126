// A game looked through move by move, as orvelin-analyse does: the core makes the very records of
// the command line, and this tells what is in them.

import { BoardCore } from "./core.mjs";
import { find, on, setText } from "./dom.mjs";
import { partOf } from "./game.mjs";
import { ReviewView } from "./review_view.mjs";

const DEPTHS = [6, 8, 10, 12, 14];
const USUAL_DEPTH = 10;
// All that the marks of orvelin-analyse need, the only good moves among them.
const SEARCH = "best,played,rest";

export class Review {
  // By the half-move behind which the position stands, as far as they are made.
  records = [];
  marks = new Map();
  #core = null;
  #run = 0;
  #key = "";

  constructor(app) {
    this.app = app;
    this.view = new ReviewView(app, this);
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
    this.view.name();
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
    this.view.forget();
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
        const record = await core.ask({ ask: "record", ...partOf(game), ply, limit: { depth },
          lines: 1, search: SEARCH, tags: game.tags, result: game.result });
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
    this.app.drawCaptions();
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
    setText(find("review-words"), texts.get(this.#state(done, wanted),
      { done, wanted, depth: this.depth }));
    find("review-result").hidden = done === 0;
    if (done > 0 && app.mode === "review") {
      this.view.draw(wanted);
    }
  }

  #state(done, wanted) {
    if (this.running) {
      return "review.runs";
    }
    if (done === 0) {
      return wanted > 1 ? "review.first" : "review.empty";
    }
    return done < wanted ? "review.part" : "review.how";
  }

  #toMark(direction) {
    const { ply } = this.app.view;
    const marked = [...this.marks.keys()].sort((a, b) => direction * (a - b));
    const next = marked.find((each) => direction * (each - ply) > 0);
    if (next) {
      this.app.go(next);
    }
  }
}
