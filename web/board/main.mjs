// The page: one game, shown at one position, and three things to do with it.

import { Analyse } from "./analyse.mjs";
import { BoardView, isOwn, kingOf } from "./board_view.mjs";
import { BoardCore } from "./core.mjs";
import { ask, askPromotion, showAbout } from "./dialogs.mjs";
import { find, on, setText } from "./dom.mjs";
import { otherSide } from "./fen.mjs";
import { emptyGame, isGame, keep, partOf, read } from "./game.mjs";
import { MovesView } from "./moves_view.mjs";
import { targetsOf, typedMoves } from "./moves.mjs";
import { openText, readFile, savePgn, showOpen } from "./open.mjs";
import { Openings } from "./openings.mjs";
import { Play } from "./play.mjs";
import { Review } from "./review.mjs";
import { Searcher } from "./searcher.mjs";
import { showSetup } from "./setup.mjs";
import { moveWords, positionWords } from "./speech.mjs";
import { LANGUAGES, languageOf, Texts } from "./texts.mjs";

const MODES = ["play", "analyse", "review"];
const SCHEMES = ["auto", "light", "dark"];
const MOST_KNOWN = 1000;

class App {
  texts = new Texts();
  core = new BoardCore();
  openings = new Openings(this.core);
  searcher = new Searcher((message) => this.tell(this.texts.get("engine.failed", { words: message })));
  game = emptyGame();
  // The position that is shown: half-moves of the game, and a line that leaves it there.
  view = { ply: 0, line: [], step: 0 };
  // What the core tells of the position shown, and of the last one of the game.
  position = null;
  last = null;
  settings = {};
  mode = "play";
  turned = false;
  #known = new Map();
  #shows = 0;

  async start() {
    const kept = read();
    this.settings = kept.settings && typeof kept.settings === "object" ? kept.settings : {};
    const language = this.settings.language in LANGUAGES ? this.settings.language : languageOf(navigator.languages);
    await this.texts.load(language);
    this.texts.fill(document);
    this.#makeParts();
    this.#listen();
    const mode = MODES.includes(kept.mode) ? kept.mode : "play";
    this.turned = kept.turned === true;
    await this.#restore(kept);
    this.#takeBook();
    this.choose(mode);
    document.body.dataset.ready = "true";
    // What is served from this machine is there without a network.
    if ("serviceWorker" in navigator && location.hostname !== "127.0.0.1") {
      navigator.serviceWorker.register("./service_worker.js").catch(() => {});
    }
  }

  #makeParts() {
    this.board = new BoardView(find("board"), this.texts, {
      targets: (square) => this.#targets(square),
      move: (from, to) => this.#chosen(from, to),
    });
    this.moves = new MovesView(this.texts, (ply) => this.go(ply), (step) => this.goLine(step));
    this.modes = { play: new Play(this), analyse: new Analyse(this), review: new Review(this) };
    for (const [language, name] of Object.entries(LANGUAGES)) {
      find("language").append(new Option(name, language));
    }
    find("language").value = this.texts.language;
    this.#nameScheme();
  }

  // The book is not waited for; without it there are no book moves.
  async #takeBook() {
    try {
      const answer = await fetch(new URL("./Orvelin.bin", import.meta.url));
      if (answer.ok) {
        await this.core.book(await answer.arrayBuffer());
      }
    } catch {
      // The page works all the same.
    }
  }

  async #restore({ game, view }) {
    if (isGame(game)) {
      const answer = await this.core.ask({ ask: "position", ...partOf(game) });
      if (!answer.error) {
        this.game = game;
        const ply = Number.isInteger(view?.ply) ? view.ply : game.moves.length;
        this.view.ply = Math.min(Math.max(ply, 0), game.moves.length);
        this.modes.play.forget();
      }
    }
  }

  // The game and its positions.

  get atEnd() {
    return this.view.ply === this.game.moves.length;
  }
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
    this.tell("");
    await this.show();
  }

  /** Asks before a game that runs is lost; the answer is whether to go on. */
  async mayLose() {
    if (!this.modes.play.running || this.game.moves.length === 0) {
      return true;
    }
    return Boolean(await ask(this.texts, this.texts.get("lose.title"), this.texts.get("lose"), this.texts.get("lose.yes")));
  }

  /** What the core tells of a position, remembered. */
  async positionOf(part) {
    const key = JSON.stringify(part);
    let known = this.#known.get(key);
    if (!known) {
      known = this.core.ask({ ask: "position", ...part });
      if (this.#known.size >= MOST_KNOWN) {
        this.#known.delete(this.#known.keys().next().value);
      }
      this.#known.set(key, known);
      known.catch(() => this.#known.delete(key));
    }
    return known;
  }

  /** The moves of a line from a position on, as players write them. */
  async sansOf(part, line) {
    const answer = await this.core.ask({ ask: "line", ...part, line });
    return answer.error ? line : answer.sans;
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
        partOf(game, view.ply, view.line)].map((each) => this.positionOf(each)));
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
    const { game, view, mode, turned, settings } = this;
    this.modes?.play.settle();
    keep({ game, view: { ply: view.ply }, mode, turned, settings });
  }

  // What is seen.

  #draw() {
    const { position, game } = this;
    const flipped = (game.play?.side === "black") !== this.turned;
    const last = this.part.moves.at(-1);
    this.board.draw(position.fen, { flipped,
      last: last ? [last.slice(0, 2), last.slice(2, 4)] : [],
      check: position.check ? kingOf(position.fen, position.side) : null });
    this.modes.play.drawPlayers(flipped);
    find("balance").classList.toggle("turned", flipped);
    this.drawWords();
    this.modes[this.mode].draw();
  }

  drawWords() {
    const { position, view, last, first, base, whole, game } = this;
    const sans = last.sans;
    this.moves.draw(first.fen, sans, this.modes.review.marks, view.ply);
    const line = view.line.length ? whole.sans.slice(view.ply) : [];
    this.moves.drawLine(base.fen, line, view.step, () => this.go(view.ply));
    const { White, Black } = game.tags;
    this.moves.title(White || Black ? `${White ?? "?"} – ${Black ?? "?"}, ${game.result}` : "");
    setText(find("where"), this.#where());
    find("words").replaceChildren(...positionWords(this.texts, position.fen).flatMap((text) => [text, " "]));
    setText(find("fen"), position.fen);
    find("first").disabled = find("previous").disabled = view.ply === 0 && line.length === 0;
    find("last").disabled = find("next").disabled = line.length ? view.step >= line.length : this.atEnd;
  }

  #where() {
    const { position, texts, view } = this;
    const san = position.sans.at(-1);
    const words = [];
    if (this.mode === "play" && this.atEnd && !view.line.length) {
      words.push(this.modes.play.words());
    } else {
      if (san) {
        words.push(texts.get(view.line.length ? "where.line" : "where.after", { move: this.#label() + san }));
      } else {
        words.push(texts.get("where.start"));
      }
      words.push(position.end ? texts.get("why." + position.end.kind) + "." : texts.get("tomove." + position.side));
    }
    if (position.check && !position.end) {
      words.push(texts.get("where.check"));
    }
    return words.join(" ");
  }

  #label() {
    const [, side, , , , number] = this.position.fen.split(" ");
    return side === "b" ? number + "." : Number(number) - 1 + "...";
  }

  /** A message above the board, until the next one or another game. */
  tell(text) {
    setText(find("message"), text);
    find("message").hidden = !text;
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

  // Ways through the game.

  go(ply) {
    this.view = { ply: Math.min(Math.max(ply, 0), this.game.moves.length), line: [], step: 0 };
    return this.show();
  }

  goLine(step) {
    this.view = { ...this.view, step };
    return this.show();
  }

  toEnd() {
    if (!this.atEnd || this.view.line.length) {
      this.go(this.game.moves.length);
    }
  }

  stepBy(direction) {
    const { view } = this;
    if (view.line.length) {
      const step = view.step + direction;
      return step < 1 ? this.go(view.ply) : step <= view.line.length ? this.goLine(step) : null;
    }
    return this.go(view.ply + direction);
  }

  /** Shows a line from the position with this many half-moves on, at a step of it. */
  showLine(ply, line, step) {
    this.view = { ply, line, step };
    return this.show();
  }

  choose(mode) {
    if (this.mode !== mode || !document.body.dataset.ready) {
      if (document.body.dataset.ready) {
        this.modes[this.mode].leave();
      }
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

  // Moves.

  #mayMove() {
    return Boolean(this.position) && !this.position.end && this.modes[this.mode].mayMove(this.position.side);
  }

  #targets(square) {
    const { position } = this;
    if (!this.#mayMove() || !isOwn(position.fen, square, position.side)) {
      return null;
    }
    return [...targetsOf(square, position.legal).keys()];
  }

  async #chosen(from, to) {
    const { position } = this;
    const moves = targetsOf(from, position.legal).get(to) ?? [];
    await this.#make(await this.#oneOf(moves));
  }

  async #oneOf(moves) {
    const promotions = moves.length > 1 && moves.every((move) => move.promotion);
    return promotions ? askPromotion(this.texts, moves, this.position.side) : moves[0];
  }

  async #make(move) {
    if (move && this.position.legal.includes(move) && this.#mayMove()) {
      this.tell("");
      await this.modes[this.mode].make(move);
    }
  }

  /** A move beside a game that is played: on in the game, or in a line that leaves it. */
  async explore(move) {
    const { game, view } = this;
    const line = view.line.slice(0, view.step);
    this.say(moveWords(this.texts, move));
    if (!line.length && game.moves[view.ply] === move.uci) {
      await this.go(view.ply + 1);
    } else if (!line.length && this.atEnd && !this.modes.play.running && game.result === "*") {
      game.moves.push(move.uci);
      this.modes.review.forget();
      await this.go(game.moves.length);
    } else {
      await this.showLine(view.ply, [...line, move.uci], line.length + 1);
    }
  }

  async #typed(event) {
    event.preventDefault();
    const field = find("typed");
    const text = field.value.trim();
    if (!text) {
      return;
    }
    if (!this.#mayMove()) {
      this.tell(this.texts.get("typed.not"));
      return;
    }
    const moves = typedMoves(text, this.position.legal);
    const squares = new Set(moves.map((move) => move.from + move.to));
    if (squares.size !== 1) {
      this.tell(this.texts.get(squares.size ? "typed.several" : "typed.none", { text }));
      return;
    }
    field.value = "";
    await this.#make(await this.#oneOf(moves));
  }

  // Listening.

  #listen() {
    MODES.forEach((mode) => on("tab-" + mode, () => this.choose(mode)));
    find("tabs").addEventListener("keydown", (event) => this.#tabKey(event));
    on("first", () => this.go(0));
    on("previous", () => this.stepBy(-1));
    on("next", () => this.stepBy(1));
    on("last", () => (this.view.line.length ? this.goLine(this.view.line.length) : this.go(this.game.moves.length)));
    on("flip", () => {
      this.turned = !this.turned;
      this.show();
    });
    find("typed-form").addEventListener("submit", (event) => this.#typed(event));
    on("scheme", () => this.#nextScheme());
    on("about", () => showAbout(this.texts, document.body.dataset.version ?? ""));
    find("language").addEventListener("change", (event) => this.#speak(event.target.value));
    on("open", () => showOpen(this));
    document.querySelectorAll(".set-up").forEach((each) => each.addEventListener("click", () => showSetup(this)));
    on("copy-fen", () => this.copy(this.position.fen));
    on("copy-pgn", async () => this.copy(await this.pgn()));
    on("save-pgn", async () => savePgn(await this.pgn()));
    document.addEventListener("keydown", (event) => this.#key(event));
    document.addEventListener("dragover", (event) => event.preventDefault());
    document.addEventListener("drop", (event) => this.#dropped(event));
    document.addEventListener("paste", (event) => this.#pasted(event));
    window.addEventListener("pagehide", () => this.keep());
  }

  #key(event) {
    const plain = !(event.ctrlKey || event.altKey || event.metaKey || event.shiftKey);
    const busy = event.target.closest?.("input, select, textarea, dialog, [role=tablist], [role=slider]");
    const keys = { ArrowLeft: "previous", ArrowRight: "next", Home: "first", End: "last" };
    if (plain && !busy && event.key in keys) {
      find(keys[event.key]).click();
      event.preventDefault();
    } else if (plain && !busy && event.key === "Escape" && this.view.line.length) {
      this.go(this.view.ply);
    }
  }

  #tabKey(event) {
    const steps = { ArrowLeft: -1, ArrowRight: 1 };
    if (event.key in steps) {
      const index = MODES.indexOf(this.mode) + steps[event.key] + MODES.length;
      const mode = MODES[index % MODES.length];
      find("tab-" + mode).focus();
      this.choose(mode);
    }
  }

  async #dropped(event) {
    event.preventDefault();
    const file = event.dataTransfer.files[0];
    const text = file ? await readFile(this, file) : event.dataTransfer.getData("text/plain");
    if (text) {
      openText(this, text);
    }
  }

  #pasted(event) {
    if (!event.target.closest?.("input, textarea, dialog")) {
      openText(this, event.clipboardData.getData("text/plain"));
    }
  }

  async copy(text) {
    try {
      await navigator.clipboard.writeText(text);
      this.say(this.texts.get("copied"));
    } catch {
      this.tell(this.texts.get("copy.failed"));
    }
  }

  async pgn() {
    const { game } = this;
    const { pgn, error } = await this.core.ask({ ask: "to-pgn", ...partOf(game), tags: game.tags, result: game.result });
    if (error) {
      this.tell(error);
    }
    return pgn ?? "";
  }

  // Language and colours.

  async #speak(language) {
    await this.texts.load(language);
    this.settings.language = language;
    this.texts.fill(document);
    this.#nameScheme();
    this.board.rename();
    Object.values(this.modes).forEach((mode) => mode.name());
    await this.show();
  }

  #nameScheme() {
    const now = document.documentElement.dataset.scheme ?? "auto";
    find("scheme").textContent = this.texts.get("scheme." + now);
  }

  #nextScheme() {
    const root = document.documentElement;
    const now = SCHEMES.indexOf(root.dataset.scheme ?? "auto");
    const next = SCHEMES[(now + 1) % SCHEMES.length];
    if (next === "auto") {
      delete root.dataset.scheme;
    } else {
      root.dataset.scheme = next;
    }
    try {
      localStorage.setItem("orvelin-scheme", next);
    } catch {
      // It is chosen for this page alone.
    }
    this.#nameScheme();
  }

  /** Called when a game has come to its end. */
  moved() {
    this.drawWords();
  }
}

const app = new App();
app.start().catch((error) => {
  find("message").textContent = String(error.message ?? error);
  find("message").hidden = false;
});
