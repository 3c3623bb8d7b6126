// Games and positions from texts and files, and games into files.

import { button, make } from "./dom.mjs";
import { openBox } from "./dialogs.mjs";
import { emptyGame } from "./game.mjs";

const MOST_BYTES = 16 * 1024 * 1024;
// So many games of a file can be chosen from.
const MOST_SHOWN = 500;

const isFen = (text) =>
  /^[1-8pnbrqk]+(\/[1-8pnbrqk]+){7}(\s|$)/i.test(text) && !text.includes("\n");

/** The text of bytes: UTF-8, or where it is none the Latin-1 of which PGN was made. */
export function textOf(bytes) {
  try {
    return new TextDecoder("utf-8", { fatal: true }).decode(bytes);
  } catch {
    return new TextDecoder("windows-1252").decode(bytes);
  }
}

/** The text of a file, or nothing where it is too large. */
export async function readFile(app, file) {
  if (file.size > MOST_BYTES) {
    app.tell(app.texts.get("open.large"));
    return "";
  }
  return textOf(await file.arrayBuffer());
}

const titleOf = ({ tags, result }) =>
  `${tags.White ?? "?"} – ${tags.Black ?? "?"}, ${result}` + (tags.Date ? `, ${tags.Date}` : "");

const gamesBox = ({ texts }, games, count) => (box, close) => {
  const list = make("select", { size: Math.min(12, Math.max(games.length, 2)),
    "aria-labelledby": "box-title" });
  games.forEach((game, index) => list.append(new Option(`${index + 1}. ${titleOf(game)}`, index)));
  list.selectedIndex = 0;
  const take = () => close(games[list.selectedIndex]);
  list.addEventListener("dblclick", take);
  list.addEventListener("keydown", (event) => event.key === "Enter" && take());
  if (count > MOST_SHOWN) {
    const note = texts.get("open.first", { most: MOST_SHOWN, count });
    box.append(make("p", { class: "faint small" }, note));
  }
  box.append(list, make("p", { class: "buttons" },
    button(texts.get("open.take"), { class: "main" }, take),
    button(texts.get("cancel"), {}, () => close(null))));
};

const chooseGame = (app, games, count) =>
  openBox(app.texts, app.texts.get("open.which"), gamesBox(app, games, count));

async function openPosition(app, fen) {
  const answers = [];
  // A position that standard rules do not take may be one of Chess960.
  for (const chess960 of [false, true]) {
    const answer = await app.positions.of({ start: fen, chess960, moves: [] });
    if (!answer.error) {
      return { game: emptyGame(answer.fen, chess960), remark: answer.remarks?.[0] };
    }
    answers.push(answer.error);
  }
  app.tell(answers[0]);
  return null;
}

async function openGames(app, text) {
  const answer = await app.core.ask({ ask: "pgn", text, most: MOST_SHOWN });
  const games = (answer.games ?? []).filter((game) => !game.error || game.moves.length);
  const wrong = answer.error ?? answer.games?.find((game) => game.error)?.error;
  if (!games.length) {
    app.tell(wrong ?? app.texts.get("open.nothing"));
    return null;
  }
  const chosen = games.length === 1 ? games[0] : await chooseGame(app, games, answer.count);
  if (!chosen) {
    return null;
  }
  const { start, chess960, moves, tags, result, error } = chosen;
  return { game: { ...emptyGame(start, chess960), moves, tags, result }, error };
}

/** Reads a FEN or PGN and shows it; what is wrong with it is told. Answers whether it was taken. */
export async function openText(app, text) {
  const trimmed = text.trim();
  if (!trimmed) {
    return false;
  }
  if (trimmed.length > MOST_BYTES) {
    app.tell(app.texts.get("open.large"));
    return false;
  }
  app.tell("");
  const found = isFen(trimmed) ? await openPosition(app, trimmed) : await openGames(app, trimmed);
  if (!found?.game || !(await app.mayLose())) {
    return false;
  }
  if (app.mode === "play") {
    app.choose("analyse");
  }
  app.modes.play.form.fromBoard();
  await app.load(found.game);
  if (found.error) {
    app.tell(app.texts.get("open.partly", { error: found.error }));
  } else if (found.remark) {
    app.tell(found.remark);
  }
  return true;
}

/** The box that a FEN or a PGN is pasted into, or a file chosen from. */
export async function showOpen(app) {
  const { texts } = app;
  const text = await openBox(texts, texts.get("open.title"), (box, close) => {
    const area = make("textarea", { rows: 8, "aria-label": texts.get("open.text"),
      spellcheck: "false", placeholder: texts.get("open.text") });
    const file = make("input", { type: "file", accept: ".pgn,.fen,.epd,.txt",
      "aria-label": texts.get("open.file") });
    file.addEventListener("change", async () => {
      if (file.files[0]) {
        close(await readFile(app, file.files[0]));
      }
    });
    box.append(make("p", { class: "faint small" }, texts.get("open.words")), area,
      make("p", {}, file), make("p", { class: "buttons" },
        button(texts.get("open.take"), { class: "main" }, () => close(area.value)),
        button(texts.get("cancel"), {}, () => close(null))));
  });
  if (text) {
    await openText(app, text);
  }
}

export function savePgn(pgn) {
  if (!pgn) {
    return;
  }
  const address = URL.createObjectURL(new Blob([pgn], { type: "application/x-chess-pgn" }));
  make("a", { href: address, download: "game.pgn" }).click();
  setTimeout(() => URL.revokeObjectURL(address), 10000);
}
