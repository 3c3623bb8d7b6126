// The texts of the page in the language of the reader: data of the folder texts.

export const LANGUAGES = { en: "English", de: "Deutsch" };

/** The first language of the browser that there are texts in. */
export function languageOf(wanted) {
  const short = wanted.map((each) => each.slice(0, 2).toLowerCase());
  return short.find((each) => each in LANGUAGES) ?? "en";
}

export class Texts {
  #texts = {};
  language = "en";

  async load(language) {
    const answer = await fetch(new URL(`./texts/${language}.json`, import.meta.url));
    if (!answer.ok) {
      throw new Error(`texts: ${answer.status}`);
    }
    this.#texts = await answer.json();
    this.language = language;
  }

  has(key) {
    return key in this.#texts;
  }

  /** A text with its {places} filled. */
  get(key, values = {}) {
    const text = this.#texts[key] ?? key;
    return text.replace(/\{(\w+)\}/g, (place, name) => values[name] ?? place);
  }

  /** A move as it is written in this language: with its own letters for the pieces. */
  san(text) {
    return text.replace(/^[KQRBN]|(?<==)[QRBN]/, (letter) => this.get("letter." + letter));
  }

  sans(texts) {
    return texts.map((text) => this.san(text));
  }

  /** A text, or what the core calls it where there is none in this language. */
  name(kind, { id, name }) {
    return this.#texts[`${kind}.${id}`] ?? name;
  }

  /** Fills all elements that ask for a text by an attribute of data. */
  fill(root) {
    const places = { text: "textContent", label: "ariaLabel", title: "title", hint: "placeholder" };
    for (const [name, property] of Object.entries(places)) {
      root.querySelectorAll(`[data-${name}]`).forEach((element) => {
        element[property] = this.get(element.dataset[name]);
      });
    }
    document.documentElement.lang = this.language;
  }
}
