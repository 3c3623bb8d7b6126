// The page: one game, shown at one position, and three things to do with it.

import { Analyse } from "./analyse.mjs";
import { kingOf } from "./board_view.mjs";
import { drawCaptions } from "./captions.mjs";
import { ask } from "./dialogs.mjs";
import { find, setText } from "./dom.mjs";
import { otherSide } from "./fen.mjs";
import { drawKept } from "./first_view.mjs";
import { keepFocus } from "./focus.mjs";
import { emptyGame, isGame, keep, partOf, read } from "./game.mjs";
import { Hand } from "./hand.mjs";
import { listen } from "./listening.mjs";
import { MovesView } from "./moves_view.mjs";
import { Openings } from "./openings.mjs";
import { Play } from "./play.mjs";
import { Positions } from "./positions.mjs";
import { Review } from "./review.mjs";
import { Searcher } from "./searcher.mjs";
import { Settings } from "./settings.mjs";
import { Sounds } from "./sounds.mjs";
import { LANGUAGES, languageOf, Texts } from "./texts.mjs";
import { Walk } from "./walk.mjs";

const MODES = ["play", "analyse", "review"];

class App extends Walk {
  texts = new Texts();
  positions = new Positions();
  openings = new Openings(this.positions.core);
  sounds = new Sounds();
  searcher = new Searcher((words) => this.tell(this.texts.get("engine.failed", { words })));
  // What the core tells of the position shown, and of the last one of the game.
  position = null;
  last = null;
  settings = {};
  mode = "play";
  turned = false;
  #shows = 0;
  #passing = false;
  // Whether what was kept is taken over, and something else may be kept in its place.
  #restored = false;
  // Whether any of the modes is entered.
  #chosen = false;

  async start() {
    const kept = read();
    this.settings = kept.settings && typeof kept.settings === "object" ? kept.settings : {};
    const { language } = this.settings;
    await this.texts.load(language in LANGUAGES ? language : languageOf(navigator.languages));
    this.texts.fill(document);
    this.#makeParts();
    const mode = MODES.includes(kept.mode) ? kept.mode : "play";
    drawKept(this, kept, mode);
    this.turned = kept.turned === true;
    await this.#restore(kept);
    listen(this, MODES);
    keepFocus();
    await this.choose(mode);
    setInert(false);
    document.body.dataset.ready = "true";
    this.searcher.start();
    // What is served from this machine is there without a network.
    if ("serviceWorker" in navigator && location.hostname !== "127.0.0.1") {
      navigator.serviceWorker.register("./service_worker.js").catch(() => {});
    }
  }

  #makeParts() {
    this.hand = new Hand(this);
    this.board = this.hand.board;
    this.moves = new MovesView(this.texts, (ply) => this.go(ply), (step) => this.goLine(step));
    this.modes = { play: new Play(this), analyse: new Analyse(this), review: new Review(this) };
    this.pageSettings = new Settings(this, () => this.#rename());
  }

  get core() {
    return this.positions.core;
  }

  async #restore({ game, view }) {
    if (isGame(game)) {
      const answer = await this.positions.of(partOf(game));
      if (!answer.error) {
        this.game = game;
        const ply = Number.isInteger(view?.ply) ? view.ply : game.moves.length;
        this.view.ply = Math.min(Math.max(ply, 0), game.moves.length);
        this.modes.play.forget();
      }
    }
    this.#restored = true;
  }

  // The game and its positions.

  get startSide() {
    return this.game.moves.length % 2 === 0 ? this.last.side : otherSide(this.last.side);
  }

  /** Takes another game in place of the one that is there. */
  async load(game, { ply = 0 } = {}) {
    this.game = game;
    this.view = { ply, line: [], step: 0 };
    this.turned = false;
    this.modes.play.forget();
    this.modes.review.forget();
    this.#clear();
    await this.show();
  }

  /** Asks before a game that runs is lost; the answer is whether to go on. */
  async mayLose() {
    if (!this.modes.play.running || this.game.moves.length === 0) {
      return true;
    }
    return Boolean(await ask(this.texts, "lose"));
  }

  /** Shows the position that is chosen, and has the parts follow. */
  async show() {
    this.#shows += 1;
    const number = this.#shows;
    const { game, view } = this;
    const part = partOf(game, view.ply, view.line.slice(0, view.step ?? view.line.length));
    let answers;
    try {
      answers = await Promise.all([part, partOf(game), partOf(game, 0), partOf(game, view.ply),
        partOf(game, view.ply, view.line)].map((each) => this.positions.of(each)));
    } catch (error) {
      this.tell(String(error.message ?? error));
      return;
    }
    if (number !== this.#shows) {
      return;
    }
    const wrong = answers.find((each) => each.error);
    if (wrong) {
      this.tell(wrong.error);
      return;
    }
    this.part = part;
    [this.position, this.last, this.first, this.base, this.whole] = answers;
    this.keep();
    this.#draw();
    this.openings.show(part, this.first.fen, () => this.part === part);
    this.modes[this.mode].follow();
  }

  keep() {
    if (!this.#restored) {
      return;
    }
    const { game, view, mode, turned, settings } = this;
    this.modes.play.clock.keep();
    // Of a line beside the game nothing is kept.
    const shown = this.base && { fen: this.base.fen,
      ...this.#look(this.base, game.moves.slice(0, view.ply)) };
    keep({ game, view: { ply: view.ply }, mode, turned, settings, shown });
  }

  // What is seen.

  // How a position behind moves is drawn.
  #look(position, moves) {
    const last = moves.at(-1);
    return { flipped: (this.game.play?.side === "black") !== this.turned,
      last: last ? [last.slice(0, 2), last.slice(2, 4)] : [],
      check: position.check ? kingOf(position.fen, position.side) : null };
  }

  #draw() {
    const look = this.#look(this.position, this.part.moves);
    this.board.draw(this.position.fen, look);
    this.modes.play.drawPlayers(look.flipped);
    find("balance").classList.toggle("turned", look.flipped);
    this.drawCaptions();
    this.modes[this.mode].draw();
  }

  /**
   * A message at the board, until the next one or another game.
   * @param passing it is about what was tried here and now, and goes with another position.
   */
  tell(text, { passing = false } = {}) {
    this.#passing = passing;
    setText(find("message"), text);
    find("message").hidden = !text;
  }

  /** Leaves nothing of a move that was begun in another position, nor of what was said of it. */
  leavePosition() {
    this.hand.clear();
    if (this.#passing) {
      this.tell("");
    }
  }

  /** Sets the bar beside the board to White's share of the points, 0 to 100. */
  balance(share) {
    find("white-share").style.height = share + "%";
    find("balance").ariaLabel = this.texts.get("balance", { share: Math.round(share) });
  }

  /** Words for screen readers. */
  say(text) {
    find("announce").textContent = text;
  }

  choose(mode) {
    if (this.mode !== mode || !this.#chosen) {
      if (this.#chosen) {
        this.modes[this.mode].leave();
        this.leavePosition();
      }
      this.#chosen = true;
      this.mode = mode;
      for (const each of MODES) {
        const chosen = each === mode;
        find("panel-" + each).hidden = !chosen;
        find("tab-" + each).ariaSelected = String(chosen);
        find("tab-" + each).tabIndex = chosen ? 0 : -1;
      }
      document.body.dataset.mode = mode;
      this.board.point([]);
      find("balance").hidden = mode === "play";
      this.modes[mode].enter();
      if (mode === "play" && this.modes.play.running) {
        this.view = { ply: this.game.moves.length, line: [], step: 0 };
      }
    }
    return this.show();
  }

  async copy(text) {
    try {
      await navigator.clipboard.writeText(text);
      this.tell(this.texts.get("copied"), { passing: true });
    } catch {
      this.tell(this.texts.get("copy.failed"));
    }
  }

  async pgn() {
    const { pgn, error } = await this.positions.pgnOf(this.game);
    if (error) {
      this.tell(error);
    }
    return pgn ?? "";
  }

  drawCaptions() {
    drawCaptions(this);
  }

  // What was said of another game, or in another language.
  #clear() {
    this.tell("");
    this.say("");
    this.hand.clear();
  }

  async #rename() {
    this.#clear();
    this.board.rename();
    Object.values(this.modes).forEach((mode) => mode.name());
    await this.show();
  }
}

// Until the core is there nothing can be done with the page.
function setInert(inert) {
  document.querySelectorAll("header, main").forEach((each) => (each.inert = inert));
}

const app = new App();
app.start().catch((error) => {
  setInert(false);
  find("message").textContent = String(error.message ?? error);
  find("message").hidden = false;
});
