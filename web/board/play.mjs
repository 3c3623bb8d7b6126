// A game against the engine.

import { Clock, clockText } from "./clock.mjs";
import { find, make, on, setText } from "./dom.mjs";
import { boardOf, chess960Start, isWhite, otherSide } from "./fen.mjs";
import { emptyGame, partOf } from "./game.mjs";
import { moveWords } from "./speech.mjs";

const LEVELS = [800, 1000, 1200, 1400, 1600, 1800, 2000, 2200, 2400];
const CLOCKS = ["none", "1+0", "3+2", "5+3", "10+5", "15+10", "30+20"];
// Milliseconds: of a move at full strength without a clock, the most at a level, and of a hint.
const FULL_TIME = 1500;
const LEVEL_TIME = 20000;
const HINT_TIME = 1000;
const TICK = 100;

export class Play {
  #clock = null;
  #thinking = false;
  #hint = null;
  #entered = false;

  constructor(app) {
    this.app = app;
    this.form = find("new-game");
    this.#fillForm();
    this.form.addEventListener("submit", (event) => {
      event.preventDefault();
      this.begin();
    });
    this.form.addEventListener("change", () => this.#formChanged());
    on("take-back", () => this.takeBack());
    on("hint", () => this.hint());
    on("resign", () => this.resign());
    on("again", () => this.#showForm());
    on("to-review", () => this.app.choose("review"));
    setInterval(() => this.#tick(), TICK);
  }

  get play() {
    return this.app.game.play;
  }
  get running() {
    return Boolean(this.play) && !this.play.over;
  }
  get texts() {
    return this.app.texts;
  }

  // What a game is begun with.

  #fillForm() {
    const { level, clock, start } = this.form.elements;
    const kept = this.app.settings.form ?? {};
    level.replaceChildren(...LEVELS.map((each) => new Option(each, each)), new Option("", 0));
    clock.replaceChildren(...CLOCKS.map((each) => new Option(each, each)), new Option("", "own"));
    start.replaceChildren(...["standard", "chess960", "board"].map((each) => new Option("", each)));
    const fill = (name, value) => {
      const field = this.form.elements[name];
      field.value = value;
      // Where what was kept is no choice any more.
      if (field.value === "") {
        field.selectedIndex = 0;
      }
    };
    this.form.elements.side.value = ["white", "black", "random"].includes(kept.side) ? kept.side : "white";
    fill("level", kept.level ?? 1200);
    fill("clock", kept.clock ?? "none");
    fill("start", kept.start === "chess960" ? kept.start : "standard");
    this.name();
    this.#formChanged();
  }

  /** Names what the script has made, in the language that is chosen. */
  name() {
    const { level, clock, start } = this.form.elements;
    level.options[LEVELS.length].text = this.texts.get("level.full");
    clock.options[0].text = this.texts.get("clock.none");
    clock.options[CLOCKS.length].text = this.texts.get("clock.own");
    for (const option of start.options) {
      option.text = this.texts.get("start." + option.value);
    }
  }

  #formChanged() {
    const { side, level, clock, start } = this.form.elements;
    this.form.querySelectorAll(".own-clock").forEach((each) => (each.hidden = clock.value !== "own"));
    this.app.settings.form = { side: side.value, level: level.value, clock: clock.value, start: start.value };
    this.app.keep();
  }

  /** Chooses the position on the board as the one to begin from. */
  fromBoard() {
    this.form.elements.start.value = "board";
    this.#formChanged();
  }

  #clockOfForm() {
    const { clock, minutes, increment } = this.form.elements;
    if (clock.value === "none") {
      return null;
    }
    const own = clock.value === "own";
    const [long, plus] = own ? [Number(minutes.value), Number(increment.value)] : clock.value.split("+").map(Number);
    const time = Math.round(long * 60000);
    return { white: time, black: time, increment: Math.round(plus * 1000), words: `${long}+${plus}` };
  }

  #settings(side) {
    return { side, level: Number(this.form.elements.level.value), clock: this.#clockOfForm(), over: null };
  }

  async begin() {
    const { side, start } = this.form.elements;
    const colour = side.value === "random" ? (Math.random() < 0.5 ? "white" : "black") : side.value;
    let game;
    if (start.value === "board") {
      const { app } = this;
      const part = partOf(app.game, app.view.ply, app.view.line);
      game = { ...emptyGame(part.start, part.chess960), moves: part.moves };
    } else if (start.value === "chess960") {
      game = emptyGame(chess960Start(Math.floor(Math.random() * 960)), true);
    } else {
      game = emptyGame();
    }
    await this.#start(game, colour);
  }

  async #start(game, side) {
    game.play = this.#settings(side);
    game.tags = this.#tags(game.play);
    await this.app.searcher.newGame();
    await this.app.load(game, { ply: game.moves.length });
  }

  #tags(play) {
    const engine = "Orvelin" + (play.level ? ` (${play.level})` : "");
    const you = this.texts.get("you");
    const today = new Date();
    const two = (number) => String(number).padStart(2, "0");
    const date = `${today.getFullYear()}.${two(today.getMonth() + 1)}.${two(today.getDate())}`;
    const tags = { Event: this.texts.get("event"), Site: "-", Date: date, Round: "-",
      White: play.side === "white" ? you : engine, Black: play.side === "white" ? engine : you };
    if (play.clock) {
      tags.TimeControl = `${play.clock.white / 1000}+${play.clock.increment / 1000}`;
    }
    return tags;
  }

  #showForm() {
    this.app.game.play = null;
    this.app.load(emptyGame());
  }

  // The course of a game.

  enter() {
    this.#entered = true;
    if (this.running && this.play.clock && !this.#clock) {
      this.#clock = new Clock(this.play.clock);
    }
  }

  leave() {
    this.#entered = false;
    this.#stopClock();
    if (this.#thinking) {
      this.app.searcher.stop();
    }
    this.#dropHint();
  }

  /** A game that is left or begun anew: nothing of the one before goes on. */
  forget() {
    if (this.#thinking || this.#hint) {
      this.app.searcher.stop();
    }
    this.#hint = null;
    this.#clock = this.running && this.play.clock ? new Clock(this.play.clock) : null;
  }

  /** Whether the user may make a move in the position that is shown. */
  mayMove(side) {
    const { app } = this;
    const atEnd = app.atEnd && app.view.line.length === 0;
    return atEnd && (this.running ? side === this.play.side : !this.play);
  }

  /** The user's move. Without a game it begins one. */
  async make(move) {
    if (!this.play) {
      const side = this.app.position.side;
      const game = this.app.game;
      game.tags = {};
      game.play = this.#settings(side);
      game.tags = this.#tags(game.play);
      game.result = "*";
      this.#clock = game.play.clock ? new Clock(game.play.clock) : null;
      await this.app.searcher.newGame();
    }
    this.#dropHint();
    await this.#append(move, this.play.side);
  }

  async #append(move, side) {
    const { app } = this;
    const now = performance.now();
    if (this.#clock) {
      // The first move of a game costs no time: its clocks begin with it.
      if (this.#clock.side === null) {
        this.#clock.run(side, now);
      }
      this.#clock.press(side, now);
      this.#keepClock();
    }
    app.game.moves.push(move.uci);
    app.view = { ply: app.game.moves.length, line: [] };
    const words = moveWords(this.texts, move);
    app.say(side === this.play.side ? words : this.texts.get("say.engine", { words }));
    await app.show();
  }

  /** What is to be done in the position that the game has come to. */
  follow() {
    const { app } = this;
    if (!this.running || !this.#entered) {
      return;
    }
    const { end, side } = app.last;
    if (end) {
      this.#finish(end.kind, end.result);
      return;
    }
    if (this.#clock && this.#clock.side === null && app.game.moves.length > 0) {
      this.#clock.run(side, performance.now());
    }
    if (side !== this.play.side && !this.#thinking) {
      this.#think(side);
    }
  }

  async #think(side) {
    const { app } = this;
    const { game } = app;
    const { level } = game.play;
    this.#thinking = true;
    this.draw();
    const count = game.moves.length;
    const best = await app.searcher.search(partOf(game), this.#options(level), this.#limits(level));
    this.#thinking = false;
    const same = app.game === game && game.moves.length === count && this.running && this.#entered;
    if (!same) {
      // What has come meanwhile may wait for the engine too.
      this.follow();
      return;
    }
    const move = app.last.legal.find((each) => each.uci === best);
    if (move) {
      await this.#append(move, side);
    } else if (best === null) {
      this.follow();
    } else {
      app.tell(this.texts.get("engine.failed", { words: best }));
    }
  }

  #options(level) {
    return { MultiPV: 1, UCI_LimitStrength: level > 0, ...(level ? { UCI_Elo: level } : {}) };
  }

  #limits(level) {
    if (!this.#clock) {
      return "movetime " + (level ? LEVEL_TIME : FULL_TIME);
    }
    const now = performance.now();
    const [white, black] = ["white", "black"].map((side) => Math.max(1, Math.round(this.#clock.left(side, now))));
    const { increment } = this.#clock;
    return `wtime ${white} btime ${black} winc ${increment} binc ${increment}`;
  }

  #finish(kind, result) {
    const { app } = this;
    this.play.over = { kind, result };
    app.game.result = result;
    this.#stopClock();
    this.#dropHint();
    app.keep();
    this.draw();
    app.say(this.#overWords());
    app.moved();
  }

  resign() {
    if (this.running) {
      const lost = this.play.side === "white" ? "0-1" : "1-0";
      if (this.#thinking) {
        this.app.searcher.stop();
      }
      this.#finish("resigned", lost);
    }
  }

  async takeBack() {
    const { app } = this;
    if (!this.running) {
      return;
    }
    const mine = app.last.side === this.play.side;
    const count = Math.min(mine ? 2 : 1, app.game.moves.length);
    if (this.#thinking) {
      app.searcher.stop();
    }
    this.#dropHint();
    app.game.moves.splice(app.game.moves.length - count, count);
    app.view = { ply: app.game.moves.length, line: [] };
    this.#stopClock();
    app.say(this.texts.get("say.back"));
    await app.show();
  }

  async hint() {
    const { app } = this;
    if (!this.running || app.last.side !== this.play.side || this.#hint) {
      return;
    }
    app.toEnd();
    this.#hint = { moves: [] };
    const own = this.#hint;
    setText(find("hint-words"), this.texts.get("hint.wait"));
    const options = { MultiPV: 1, UCI_LimitStrength: false };
    const part = partOf(app.game);
    const best = await app.searcher.search(part, options, "movetime " + HINT_TIME, (info) => {
      if (info.moves.length && info.line === 1) {
        own.moves = info.moves;
      }
    });
    if (this.#hint !== own || best === null) {
      return;
    }
    const line = own.moves[0] === best ? own.moves.slice(0, 6) : [best];
    const sans = await app.sansOf(part, line);
    if (this.#hint === own) {
      app.board.point([{ from: best.slice(0, 2), to: best.slice(2, 4), kind: "best" }]);
      setText(find("hint-words"), this.texts.get("hint.words", { moves: sans.join(" ") }));
      this.#hint = null;
    }
  }

  #dropHint() {
    if (this.#hint) {
      this.#hint = null;
      this.app.searcher.stop();
    }
    setText(find("hint-words"), "");
    this.app.board.point([]);
  }

  // Clocks.

  #stopClock() {
    if (this.#clock) {
      this.#clock.stop(performance.now());
      this.#keepClock();
    }
  }

  #keepClock() {
    const now = performance.now();
    const { clock } = this.play ?? {};
    if (clock) {
      clock.white = this.#clock.left("white", now);
      clock.black = this.#clock.left("black", now);
    }
  }

  /** The state of the clocks goes into what is kept. */
  settle() {
    if (this.#clock) {
      this.#keepClock();
    }
  }

  #tick() {
    if (!this.running || !this.#clock?.side) {
      return;
    }
    const now = performance.now();
    const { side } = this.#clock;
    this.#drawClocks();
    if (this.#clock.left(side, now) === 0) {
      if (this.#thinking) {
        this.app.searcher.stop();
      }
      // A bare king cannot win by the clock.
      const other = otherSide(side);
      const pieces = boardOf(this.app.last.fen).filter((piece) =>
        piece !== "." && isWhite(piece) === (other === "white"));
      const won = other === "white" ? "1-0" : "0-1";
      this.#finish("time", pieces.length > 1 ? won : "1/2-1/2");
    }
  }

  // What is seen.

  #overWords() {
    const { kind, result } = this.play.over;
    if (result === "1/2-1/2") {
      return this.texts.get("over.draw", { why: this.texts.get("why." + kind) });
    }
    const winner = result === "1-0" ? "white" : "black";
    const who = this.texts.get(winner === this.play.side ? "over.won" : "over.lost");
    return `${who} ${this.texts.get("over." + kind, { winner: this.texts.get(winner), loser: this.texts.get(otherSide(winner)) })}`;
  }

  /** One sentence on the state of the game. */
  words() {
    if (!this.play) {
      return this.texts.get("play.first");
    }
    if (this.play.over) {
      return this.#overWords();
    }
    return this.texts.get(this.app.last.side === this.play.side ? "play.yours" : "play.thinks");
  }

  draw() {
    const { play, texts, app } = this;
    this.form.hidden = Boolean(play);
    find("playing").hidden = !play;
    if (!play) {
      return;
    }
    const level = play.level ? texts.get("level.of", { level: play.level }) : texts.get("level.full");
    setText(find("play-title"), texts.get("play.title", { level }));
    setText(find("play-words"), play.over ? this.#overWords() : "");
    find("play-buttons").hidden = Boolean(play.over);
    find("over-buttons").hidden = !play.over;
    const first = app.startSide === play.side ? 0 : 1;
    find("take-back").disabled = app.game.moves.length <= first;
    find("hint").disabled = app.last.side !== play.side;
    this.#drawClocks();
  }

  /** Names and clocks beside the board, where there is a game. */
  drawPlayers(flipped) {
    for (const [place, side] of [["upper", flipped ? "white" : "black"], ["lower", flipped ? "black" : "white"]]) {
      const row = find(place);
      const { tags } = this.app.game;
      const name = tags[side === "white" ? "White" : "Black"] ?? "";
      row.hidden = !name;
      row.dataset.side = side;
      row.querySelector(".name").replaceChildren(make("span", { class: "dot-side " + side }), name);
    }
    this.#drawClocks();
  }

  #drawClocks() {
    for (const place of ["upper", "lower"]) {
      const element = find(place).querySelector(".clock");
      const { side } = find(place).dataset;
      const clock = this.play?.clock;
      element.hidden = !clock;
      if (clock && side) {
        const now = performance.now();
        const left = this.#clock ? this.#clock.left(side, now) : clock[side];
        setText(element, clockText(left));
        element.classList.toggle("runs", this.#clock?.side === side);
        element.classList.toggle("short", left < 20000);
      }
    }
  }
}
