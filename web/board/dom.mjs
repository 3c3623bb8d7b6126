// Small helpers around the document. What is shown is always set as text, never as HTML.

const SVG = "http://www.w3.org/2000/svg";

export const find = (id) => document.getElementById(id);

function setAll(element, attributes) {
  for (const [name, value] of Object.entries(attributes)) {
    element.setAttribute(name, value);
  }
  return element;
}

/** An element with attributes and children, which are elements or texts. */
export function make(tag, attributes = {}, ...children) {
  const element = setAll(document.createElement(tag), attributes);
  element.append(...children);
  return element;
}

/** The same of a drawing. */
export const drawn = (tag, attributes = {}) =>
  setAll(document.createElementNS(SVG, tag), attributes);

export function button(text, attributes, action) {
  const element = make("button", { type: "button", ...attributes }, text);
  element.addEventListener("click", action);
  return element;
}

/** Sets a text only where it changes, so that a screen reader does not say it again. */
export function setText(element, text) {
  if (element.textContent !== text) {
    element.textContent = text;
  }
}

export const on = (id, action) => find(id).addEventListener("click", action);

/** With signs of numbers as they are set; the hyphens of castling stay. */
export const typeset = (text) => text.replace(/-(?=\d)/g, "\u2212");

/** A number with a sign and two places; a nought has no sign. */
export function signed(value) {
  const text = (value > 0 ? "+" : "") + value.toFixed(2);
  return typeset(/[1-9]/.test(text) ? text : "0.00");
}
