// What is done with the page beside moves: buttons, keys, texts that are pasted or dropped.

import { showAbout } from "./dialogs.mjs";
import { find, on } from "./dom.mjs";
import { openText, readFile, savePgn, showOpen } from "./open.mjs";
import { showSetup } from "./setup.mjs";

// Where keys have a meaning of their own.
const BUSY = "input, select, textarea, dialog, [role=tablist], [role=slider]";
const STEPS = { ArrowLeft: "previous", ArrowRight: "next", Home: "first", End: "last" };

function listenToButtons(app) {
  on("first", () => app.go(0));
  on("previous", () => app.stepBy(-1));
  on("next", () => app.stepBy(1));
  on("last", () => (app.view.line.length ? app.goLine(app.view.line.length)
    : app.go(app.game.moves.length)));
  on("flip", () => {
    app.turned = !app.turned;
    app.show();
  });
  on("about", () => showAbout(app.texts, document.body.dataset.version ?? ""));
  on("open", () => showOpen(app));
  document.querySelectorAll(".set-up").forEach((each) =>
    each.addEventListener("click", () => showSetup(app)));
  on("copy-fen", () => app.copy(app.position.fen));
  on("copy-pgn", async () => app.copy(await app.pgn()));
  on("save-pgn", async () => savePgn(await app.pgn()));
}

function hearKey(app, event) {
  const plain = !(event.ctrlKey || event.altKey || event.metaKey || event.shiftKey);
  if (!plain || event.target.closest?.(BUSY)) {
    return;
  }
  if (event.key in STEPS) {
    find(STEPS[event.key]).click();
    event.preventDefault();
  } else if (event.key === "Escape" && app.view.line.length) {
    app.go(app.view.ply);
  }
}

function listenToTabs(app, modes) {
  modes.forEach((mode) => on("tab-" + mode, () => app.choose(mode)));
  const steps = { ArrowLeft: -1, ArrowRight: 1 };
  find("tabs").addEventListener("keydown", (event) => {
    if (event.key in steps) {
      const index = modes.indexOf(app.mode) + steps[event.key] + modes.length;
      const mode = modes[index % modes.length];
      find("tab-" + mode).focus();
      app.choose(mode);
    }
  });
}

async function takeDropped(app, event) {
  event.preventDefault();
  const file = event.dataTransfer.files[0];
  const text = file ? await readFile(app, file) : event.dataTransfer.getData("text/plain");
  if (text) {
    openText(app, text);
  }
}

/** @param modes the names of the tabs, in their order. */
export function listen(app, modes) {
  listenToTabs(app, modes);
  listenToButtons(app);
  document.addEventListener("keydown", (event) => hearKey(app, event));
  document.addEventListener("dragover", (event) => event.preventDefault());
  document.addEventListener("drop", (event) => takeDropped(app, event));
  document.addEventListener("paste", (event) => {
    if (!event.target.closest?.("input, textarea, dialog")) {
      openText(app, event.clipboardData.getData("text/plain"));
    }
  });
  window.addEventListener("pagehide", () => app.keep());
}
