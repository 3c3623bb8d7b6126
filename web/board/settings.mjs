// What is chosen for the page as a whole: language, colours and sounds.

import { find, on } from "./dom.mjs";
import { LANGUAGES } from "./texts.mjs";

const SCHEMES = ["auto", "light", "dark"];

export class Settings {
  /** @param change is called when the texts are those of another language. */
  constructor(app, change) {
    this.app = app;
    for (const [language, name] of Object.entries(LANGUAGES)) {
      find("language").append(new Option(name, language));
    }
    find("language").value = app.texts.language;
    find("language").addEventListener("change", async ({ target }) => {
      await app.texts.load(target.value);
      app.settings.language = target.value;
      app.texts.fill(document);
      this.name();
      change();
    });
    on("scheme", () => this.#nextScheme());
    app.sounds.on = app.settings.sound === true;
    on("sound", () => {
      app.sounds.on = app.settings.sound = !app.sounds.on;
      app.keep();
      this.name();
      app.sounds.play("move");
    });
    this.name();
  }

  name() {
    const now = document.documentElement.dataset.scheme ?? "auto";
    const { texts, sounds } = this.app;
    find("scheme").textContent = texts.get("scheme." + now);
    find("sound").textContent = texts.get(sounds.on ? "sound.on" : "sound.off");
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
    this.name();
  }
}
