"use strict";
// Before anything is drawn: the colours that were chosen, here or on a page of orvelin-explain.
try {
  const scheme = localStorage.getItem("orvelin-scheme");
  if (scheme === "light" || scheme === "dark") {
    document.documentElement.dataset.scheme = scheme;
  }
} catch {
  // Nothing is kept here; the colours are those of the system.
}
