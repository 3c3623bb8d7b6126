// What a game is begun with: colour, level, clock and start.

import { find } from "./dom.mjs";
import { chess960Start } from "./fen.mjs";
import { emptyGame, partOf } from "./game.mjs";

// Those whose strength was measured.
const LEVELS = [800, 900, 1000, 1100, 1200, 1300, 1400, 1500, 1700, 1800, 2000, 2200, 2400];
const CLOCKS = ["none", "1+0", "3+2", "5+3", "10+5", "15+10", "30+20"];
const STARTS = ["standard", "chess960", "board"];

function today() {
  const now = new Date();
  const two = (number) => String(number).padStart(2, "0");
  return `${now.getFullYear()}.${two(now.getMonth() + 1)}.${two(now.getDate())}`;
}

export class GameForm {
  /** @param begin is called with a game and the user's colour when a game is to begin. */
  constructor(app, begin) {
    this.app = app;
    this.root = find("new-game");
    this.#fill();
    this.root.addEventListener("submit", (event) => {
      event.preventDefault();
      const { side } = this.root.elements;
      const lot = Math.random() < 0.5 ? "white" : "black";
      begin(this.#game(), side.value === "random" ? lot : side.value);
    });
    this.root.addEventListener("change", () => this.#changed());
  }

  #fill() {
    const { side, level, clock, start } = this.root.elements;
    const kept = this.app.settings.form ?? {};
    const options = (values) => values.map((each) => new Option(each, each));
    level.replaceChildren(...options(LEVELS), new Option("", 0));
    clock.replaceChildren(...options(CLOCKS), new Option("", "own"));
    start.replaceChildren(...STARTS.map((each) => new Option("", each)));
    const fill = (field, value) => {
      field.value = value;
      // Where what was kept is no choice any more.
      if (field.value === "") {
        field.selectedIndex = 0;
      }
    };
    side.value = ["white", "black", "random"].includes(kept.side) ? kept.side : "white";
    fill(level, kept.level ?? 1200);
    fill(clock, kept.clock ?? "none");
    fill(start, kept.start === "chess960" ? kept.start : "standard");
    this.name();
    this.#changed();
  }

  /** Names what the script has made, in the language that is chosen. */
  name() {
    const { texts } = this.app;
    const { level, clock, start } = this.root.elements;
    level.options[LEVELS.length].text = texts.get("level.full");
    clock.options[0].text = texts.get("clock.none");
    clock.options[CLOCKS.length].text = texts.get("clock.own");
    for (const option of start.options) {
      option.text = texts.get("start." + option.value);
    }
  }

  #changed() {
    const { side, level, clock, start } = this.root.elements;
    const own = clock.value === "own";
    this.root.querySelectorAll(".own-clock").forEach((each) => (each.hidden = !own));
    this.app.settings.form =
      { side: side.value, level: level.value, clock: clock.value, start: start.value };
    this.app.keep();
  }

  /** Chooses the position on the board as the one to begin from. */
  fromBoard() {
    this.root.elements.start.value = "board";
    this.#changed();
  }

  /** The position to choose the next game at: the start of the last one, where it was set up. */
  again({ start, chess960 }) {
    const { value } = this.root.elements.start;
    if (value === "board" && start !== "startpos") {
      return emptyGame(start, chess960);
    }
    if (value === "board") {
      this.root.elements.start.value = "standard";
      this.#changed();
    }
    return emptyGame();
  }

  #clock() {
    const { clock, minutes, increment } = this.root.elements;
    if (clock.value === "none") {
      return null;
    }
    const [long, plus] = clock.value === "own" ? [Number(minutes.value), Number(increment.value)]
      : clock.value.split("+").map(Number);
    const time = Math.round(long * 60000);
    const words = `${long}+${plus}`;
    return { white: time, black: time, increment: Math.round(plus * 1000), words };
  }

  #game() {
    const { app } = this;
    const start = this.root.elements.start.value;
    if (start === "board") {
      const part = partOf(app.game, app.view.ply, app.view.line);
      return { ...emptyGame(part.start, part.chess960), moves: part.moves };
    }
    return start === "chess960" ? emptyGame(chess960Start(Math.floor(Math.random() * 960)), true)
      : emptyGame();
  }

  /** Makes a game one that the user plays on this side, as the form says. */
  settle(game, side) {
    const { texts } = this.app;
    const play = { side, level: Number(this.root.elements.level.value), clock: this.#clock(),
      over: null };
    const engine = "Orvelin" + (play.level ? ` (${play.level})` : "");
    const you = texts.get("you");
    game.play = play;
    game.result = "*";
    game.tags = { Event: texts.get("event"), Site: "-", Date: today(), Round: "-",
      White: side === "white" ? you : engine, Black: side === "white" ? engine : you };
    if (play.clock) {
      game.tags.TimeControl = `${play.clock.white / 1000}+${play.clock.increment / 1000}`;
    }
  }
}
