"use strict";
(function () {
  const data = JSON.parse(document.getElementById("data").textContent);
  const find = (id) => document.getElementById(id);
  const last = data.positions.length - 1;
  const graph = find("graph");
  const state = { ply: 0, line: null, step: 0, flipped: false, chart: "difference" };
  const SVG = "http://www.w3.org/2000/svg";

  function make(tag, attributes, text) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes || {})) {
      element.setAttribute(name, value);
    }
    if (text !== undefined) {
      element.textContent = text;
    }
    return element;
  }

  function drawn(tag, attributes) {
    const element = document.createElementNS(SVG, tag);
    for (const [name, value] of Object.entries(attributes)) {
      element.setAttribute(name, value);
    }
    return element;
  }

  const typeset = (text) => text.replace(/-/g, "\u2212");
  const signed = (value) => {
    const text = (value > 0 ? "+" : "") + value.toFixed(2);
    return typeset(/[1-9]/.test(text) ? text : "0.00");
  };

  // The board: 64 letters from a1 on, as they are after moves from a FEN.

  function boardOf(fen) {
    const board = [];
    fen.split(" ")[0].split("/").reverse().forEach((rank) => {
      for (const letter of rank) {
        board.push(...(/[1-8]/.test(letter) ? ".".repeat(Number(letter)) : letter));
      }
    });
    return board;
  }

  const squareOf = (name) => name.charCodeAt(0) - 97 + 8 * (Number(name[1]) - 1);

  function castle(board, from, to) {
    const king = board[from];
    const rook = king === "K" ? "R" : "r";
    const takesRook = board[to] === rook;
    const right = to > from;
    const rank = from - (from % 8);
    let corner = to;
    if (!takesRook) {
      const step = right ? 1 : -1;
      corner = from + step;
      while (board[corner] !== rook && corner % 8 !== (right ? 7 : 0)) {
        corner += step;
      }
    }
    board[from] = ".";
    board[corner] = ".";
    board[rank + (right ? 6 : 2)] = king;
    board[rank + (right ? 5 : 3)] = rook;
  }

  function apply(board, move) {
    const from = squareOf(move);
    const to = squareOf(move.slice(2));
    const piece = board[from];
    const kind = piece.toLowerCase();
    const ownRook = board[to] === (piece === "K" ? "R" : "r");
    if (kind === "k" && (ownRook || Math.abs((to % 8) - (from % 8)) === 2)) {
      castle(board, from, to);
      return;
    }
    if (kind === "p" && from % 8 !== to % 8 && board[to] === ".") {
      board[(from - (from % 8)) + (to % 8)] = ".";
    }
    board[from] = ".";
    board[to] = piece;
    if (move.length > 4) {
      board[to] = piece === "P" ? move[4].toUpperCase() : move[4];
    }
  }

  const NAMES = { p: "pawn", n: "knight", b: "bishop", r: "rook", q: "queen", k: "king" };

  function piecesText(board) {
    const sides = [["White", /[A-Z]/], ["Black", /[a-z]/]].map(([side, letters]) => {
      const pieces = [];
      for (const kind of "kqrbnp") {
        board.forEach((piece, square) => {
          if (letters.test(piece) && piece.toLowerCase() === kind) {
            pieces.push(NAMES[kind] + " " + "abcdefgh"[square % 8] + (Math.floor(square / 8) + 1));
          }
        });
      }
      return side + ": " + pieces.join(", ");
    });
    return sides.join(". ") + ".";
  }

  function drawBoard(board, move) {
    const root = drawn("svg", { viewBox: "0 0 320 320", role: "img" });
    root.setAttribute("aria-label", "Board. " + piecesText(board));
    const moved = move ? [squareOf(move), squareOf(move.slice(2))] : [];
    for (let square = 0; square < 64; square += 1) {
      const file = square % 8;
      const rank = Math.floor(square / 8);
      const x = 40 * (state.flipped ? 7 - file : file);
      const y = 40 * (state.flipped ? rank : 7 - rank);
      const kind = (file + rank) % 2 ? "light" : "dark";
      root.append(drawn("rect", { class: kind, x, y, width: 40, height: 40 }));
      if (moved.includes(square)) {
        root.append(drawn("rect", { class: "moved", x, y, width: 40, height: 40 }));
      }
      if (board[square] !== ".") {
        const href = "#piece-" + board[square];
        root.append(drawn("use", { href, x, y, width: 40, height: 40 }));
      }
      if (y === 280) {
        const text = drawn("text", { x: x + 34, y: y + 38 });
        text.textContent = "abcdefgh"[file];
        root.append(text);
      }
      if (x === 0) {
        const text = drawn("text", { x: 1.5, y: y + 7.5 });
        text.textContent = String(rank + 1);
        root.append(text);
      }
    }
    find("board").replaceChildren(root);
  }

  // Bars.

  function bar(name, code, value, reach, kinds, isTerm, meaning) {
    const row = make("div", { class: isTerm ? "bar term" : "bar" });
    const label = make("span", { class: "name" }, name);
    if (code) {
      label.append(" ", make("code", {}, code));
    }
    if (meaning) {
      label.title = meaning;
    }
    const track = make("div", { class: "track" });
    const width = Math.min(Math.abs(value) / reach, 1) * 50;
    const block = make("div", { class: value > 0 ? kinds[0] : kinds[1] });
    block.style.width = width + "%";
    block.style.left = (value > 0 ? 50 : 50 - width) + "%";
    track.append(block);
    row.append(label, track, make("span", { class: "figure" }, signed(value)));
    return row;
  }

  function drawBars(groups, kinds) {
    const open = new Set();
    find("bars").querySelectorAll("details[open]").forEach((each) => open.add(each.dataset.group));
    const values = groups.flatMap(([, sum, parts]) => [sum, ...parts.map((part) => part[1])]);
    const reach = Math.max(0.5, ...values.map(Math.abs));
    const rows = groups.map(([group, sum, parts]) => {
      const heading = bar(data.groups[group], "", sum, reach, kinds, false);
      if (!parts.length) {
        heading.className = "bar alone";
        return heading;
      }
      const details = make("details", { "data-group": group });
      details.open = open.has(String(group));
      const summary = make("summary");
      summary.append(heading);
      details.append(summary);
      parts.forEach(([term, value]) => {
        const [code, full, meaning] = data.terms[term];
        details.append(bar(full, code, value, reach, kinds, true, meaning));
      });
      return details;
    });
    find("bars").replaceChildren(...rows);
  }

  // Lines.

  function numbered(fen, sans) {
    const fields = fen.split(" ");
    let number = Number(fields[5]);
    let white = fields[1] === "w";
    return sans.map((san, index) => {
      const label = white ? number + "." : index === 0 ? number + "..." : "";
      number += white ? 0 : 1;
      white = !white;
      return label + san;
    });
  }

  function showLine(title, base, line, key) {
    const paragraph = make("p", { class: "line" });
    const bound = line.bound ? " at least" : "";
    paragraph.append(make("strong", {}, title), bound + " ",
      typeset(line.score) + ", " + Math.round(line.chances) + "\u00a0% for White: ");
    numbered(base.fen, line.san).forEach((text, index) => {
      const button = make("button", { type: "button", "aria-pressed": "false" }, text);
      button.dataset.line = key;
      button.dataset.step = String(index + 1);
      button.addEventListener("click", () => stepLine(base, line, key, index + 1));
      paragraph.append(button, " ");
    });
    return paragraph;
  }

  function stepLine(base, line, key, step) {
    state.line = { base, line, key };
    state.step = step;
    if (data.kind === "position") {
      drawLineBars(line);
    }
    show();
  }

  function leaveLine() {
    if (state.line) {
      state.line = null;
      show();
    }
  }

  function pressLine() {
    document.querySelectorAll("[data-line]").forEach((button) => {
      const pressed = state.line && state.line.key === button.dataset.line &&
        String(state.step) === button.dataset.step;
      button.setAttribute("aria-pressed", String(Boolean(pressed)));
    });
  }

  // What is shown of the chosen position.

  const moveText = (move) => move.label + move.san + move.mark;

  function show() {
    const position = data.positions[state.ply];
    let board = boardOf(position.fen);
    let move = state.ply > 0 ? data.moves[state.ply - 1].move : "";
    let where = state.ply > 0 ? "After " + moveText(data.moves[state.ply - 1]) : "The start";
    if (data.kind === "position") {
      where = position.fen.split(" ")[1] === "w" ? "White to move" : "Black to move";
    }
    if (state.line) {
      const { base, line } = state.line;
      board = boardOf(base.fen);
      line.moves.slice(0, state.step).forEach((each) => {
        apply(board, each);
        move = each;
      });
      where = "In the line, after " + numbered(base.fen, line.san).slice(0, state.step).pop();
    }
    drawBoard(board, move);
    find("where").textContent = where;
    find("back").hidden = !state.line;
    find("balance").className = state.flipped ? "balance turned" : "balance";
    find("white-share").style.height = position.chances + "%";
    pressLine();
  }

  function drawChart() {
    const move = data.moves[state.ply - 1];
    const position = data.positions[state.ply];
    const hasDifference = Boolean(move && move.groups);
    const difference = hasDifference && state.chart === "difference";
    find("difference").disabled = !hasDifference;
    find("difference").setAttribute("aria-pressed", String(difference));
    find("position").setAttribute("aria-pressed", String(!difference));
    if (difference) {
      const best = move.best.san[0];
      find("chart-words").textContent = "What " + move.san + " gives away (left) or wins " +
        "(right) against " + best + ", for " + (move.white ? "White" : "Black") +
        ", in pawns, at the ends of both lines.";
      drawBars(move.groups, ["gain", "losing"]);
    } else {
      find("chart-words").textContent = "What the position is made of before any search, in " +
        "pawns: right is good for White, left for Black." +
        (position.note && " " + position.note);
      drawBars(position.groups, ["for-white", "for-black"]);
    }
  }

  function drawLineBars(line) {
    find("position").setAttribute("aria-pressed", "false");
    document.querySelectorAll(".leaf").forEach((button) => {
      const pressed = data.lines[Number(button.dataset.leaf)] === line;
      button.setAttribute("aria-pressed", String(pressed));
    });
    if (!line.groups) {
      find("chart-words").textContent = line.why;
      find("bars").replaceChildren();
      return;
    }
    find("chart-words").textContent = "The leaf, the position that gave the line its score, in " +
      "pawns: right is good for White, left for Black. It is reached by " + line.leaf.join(" ") +
      (line.leafFen ? ": " + line.leafFen : "");
    drawBars(line.groups, ["for-white", "for-black"]);
  }

  function describeMove() {
    const lines = find("lines");
    const position = data.positions[state.ply];
    if (state.ply === 0) {
      find("headline").textContent = "The start";
      find("headline").className = "";
      find("sentence").textContent = "White has " + Math.round(position.chances) +
        " % of the chances.";
      lines.replaceChildren();
      return;
    }
    const move = data.moves[state.ply - 1];
    const base = data.positions[state.ply - 1];
    find("headline").textContent = moveText(move) + (move.markName ? " – " + move.markName : "");
    find("headline").className = move.markName.split(" ")[0];
    find("sentence").textContent = typeset(move.sentence);
    const shown = [];
    if (move.best) {
      shown.push(showLine(move.isBest ? "Best, and played" : "Best", base, move.best, "best"));
    }
    if (move.played) {
      shown.push(showLine("Played", base, move.played, "played"));
    }
    lines.replaceChildren(...shown);
  }

  function markMove() {
    document.querySelectorAll("[data-ply]").forEach((button) => {
      const chosen = Number(button.dataset.ply) === state.ply;
      button.tabIndex = chosen || (state.ply === 0 && button.dataset.ply === "1") ? 0 : -1;
      if (chosen) {
        button.setAttribute("aria-current", "true");
        const focused = document.activeElement;
        if (focused && focused.dataset.ply) {
          button.focus();
        }
      } else {
        button.removeAttribute("aria-current");
      }
    });
  }

  function choose(ply) {
    state.ply = Math.max(0, Math.min(last, ply));
    state.line = null;
    const position = data.positions[state.ply];
    if (graph) {
      const name = state.ply ? moveText(data.moves[state.ply - 1]) : "The start";
      find("cursor").style.left = (last ? (100 * state.ply) / last : 0) + "%";
      graph.setAttribute("aria-valuenow", state.ply);
      graph.setAttribute("aria-valuetext",
        name + ": White " + Math.round(position.chances) + " %, " + typeset(position.score));
    }
    describeMove();
    markMove();
    show();
    drawChart();
  }

  function chooseMark(direction) {
    for (let ply = state.ply + direction; ply > 0 && ply <= last; ply += direction) {
      if (data.moves[ply - 1].mark) {
        choose(ply);
        return;
      }
    }
  }

  function flip() {
    state.flipped = !state.flipped;
    show();
  }

  function stepBy(direction) {
    if (state.line) {
      const { base, line, key } = state.line;
      const step = state.step + direction;
      if (step > 0 && step <= line.moves.length) {
        stepLine(base, line, key, step);
      } else if (step < 1) {
        leaveLine();
      }
    } else if (data.kind === "game") {
      choose(state.ply + direction);
    } else if (direction > 0 && data.lines.length) {
      stepLine(data.positions[0], data.lines[0], "0", 1);
    }
  }

  // Light and dark.

  const SCHEMES = { auto: "Colours: auto", light: "Colours: light", dark: "Colours: dark" };

  function setScheme(name) {
    if (name === "auto") {
      document.documentElement.removeAttribute("data-scheme");
    } else {
      document.documentElement.dataset.scheme = name;
    }
    find("scheme").textContent = SCHEMES[name];
    find("scheme").dataset.now = name;
    try {
      localStorage.setItem("orvelin-scheme", name);
    } catch (error) {
      // It is then chosen for this page alone.
    }
  }

  function keptScheme() {
    try {
      const name = localStorage.getItem("orvelin-scheme");
      return name in SCHEMES ? name : "auto";
    } catch (error) {
      return "auto";
    }
  }

  find("scheme").addEventListener("click", () => {
    const names = Object.keys(SCHEMES);
    const next = names[(names.indexOf(find("scheme").dataset.now) + 1) % names.length];
    setScheme(next);
  });
  setScheme(keptScheme());

  // Keys and clicks.

  const KEYS = {
    ArrowLeft: () => stepBy(-1),
    ArrowRight: () => stepBy(1),
    ArrowUp: () => stepBy(1),
    ArrowDown: () => stepBy(-1),
    Home: () => choose(0),
    End: () => choose(last),
    Escape: leaveLine,
    f: flip,
    n: () => chooseMark(1),
    p: () => chooseMark(-1),
  };

  document.addEventListener("keydown", (event) => {
    const plain = !(event.ctrlKey || event.altKey || event.metaKey || event.shiftKey);
    const action = KEYS[event.key];
    const vertical = event.key === "ArrowUp" || event.key === "ArrowDown";
    // Elsewhere than on the graph these two scroll the page.
    if (plain && action && (!vertical || document.activeElement === graph)) {
      action();
      event.preventDefault();
    }
  });

  function on(id, action) {
    find(id).addEventListener("click", action);
  }

  on("flip", flip);
  on("back", leaveLine);
  on("next", () => stepBy(1));
  on("previous", () => stepBy(-1));
  document.querySelectorAll(".needs-script").forEach((each) => {
    each.hidden = false;
  });

  if (data.kind === "position") {
    const position = data.positions[0];
    find("lines").replaceChildren(...data.lines.map((line, index) => {
      const paragraph = showLine(index + 1 + ".", position, line, String(index));
      const button = make("button", { type: "button", class: "leaf", "data-leaf": index,
        "aria-pressed": "false" }, "leaf");
      button.addEventListener("click", () => drawLineBars(line));
      button.setAttribute("aria-label", "The leaf of line " + (index + 1));
      paragraph.append(button);
      return paragraph;
    }));
    on("position", () => {
      leaveLine();
      document.querySelectorAll(".leaf").forEach((each) => {
        each.setAttribute("aria-pressed", "false");
      });
      drawChart();
    });
    show();
    drawChart();
    return;
  }

  on("first", () => choose(0));
  on("last", () => choose(last));
  on("difference", () => {
    state.chart = "difference";
    drawChart();
  });
  on("position", () => {
    state.chart = "position";
    drawChart();
  });
  document.querySelectorAll("[data-ply]").forEach((button) => {
    button.addEventListener("click", () => choose(Number(button.dataset.ply)));
  });

  function chooseAt(event) {
    const box = graph.getBoundingClientRect();
    choose(Math.round(((event.clientX - box.left) / box.width) * last));
  }

  graph.addEventListener("pointerdown", (event) => {
    chooseAt(event);
    if (event.pointerType === "mouse") {
      graph.setPointerCapture(event.pointerId);
    }
  });
  graph.addEventListener("pointermove", (event) => {
    if (event.buttons === 1 && event.pointerType === "mouse") {
      chooseAt(event);
    }
  });

  function chooseByAddress() {
    const found = /^#ply-([0-9]+)$/.exec(location.hash);
    choose(found ? Number(found[1]) : 0);
    if (found) {
      find("board").scrollIntoView({ block: "nearest" });
    }
  }

  window.addEventListener("hashchange", chooseByAddress);
  chooseByAddress();
})();
