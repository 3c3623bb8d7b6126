// Keys stay where they can be used: where the control that has the focus is hidden, disabled or
// taken away, another one gets it. What an element or one around it names by data-then comes first,
// then the next control around it. The one that is chosen among several is taken, else the first.

const CONTROLS = "button, input, select, textarea, summary, [tabindex='0']";

const isThere = (element) => element.isConnected && !element.disabled && element.checkVisibility();

function firstControl(place) {
  if (!place || !isThere(place)) {
    return null;
  }
  const controls = [place, ...place.querySelectorAll(CONTROLS)]
    .filter((each) => each.matches(CONTROLS) && isThere(each));
  return controls.find((each) => each.ariaPressed === "true") ?? controls[0] ?? null;
}

function nextOf(path) {
  for (const each of path) {
    const then = each.dataset.then && firstControl(document.getElementById(each.dataset.then));
    if (then) {
      return then;
    }
  }
  return path.slice(1).map(firstControl).find(Boolean) ?? null;
}

/** Watches over the focus of the page. */
export function keepFocus() {
  // The element that has the focus, and what is around it, from the inside on.
  let path = [];
  document.addEventListener("focusin", ({ target }) => {
    path = [];
    for (let each = target; each && each !== document.documentElement; each = each.parentElement) {
      path.push(each);
    }
  });
  // Left for nothing else, as by a click beside all controls.
  document.addEventListener("focusout", ({ target }) => queueMicrotask(() => {
    if (target === path[0] && isThere(target) && document.activeElement === document.body) {
      path = [];
    }
  }));
  new MutationObserver(() => {
    const now = document.activeElement;
    const lost = path.length && !isThere(path[0]) && (now === document.body || now === path[0]);
    // A dialog gives the focus back by itself.
    if (lost && !path.some((each) => each.matches("dialog"))) {
      nextOf(path)?.focus();
    }
  }).observe(document.body, { subtree: true, childList: true, attributes: true,
    attributeFilter: ["hidden", "disabled"] });
}
