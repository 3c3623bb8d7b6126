"use strict";
// Keeps the page for when there is no network. tools/make-board puts in the files and their version:
// another version is another store, which takes the place of the old one as a whole.

const FILES = [];
const VERSION = "";

const STORE = "orvelin-board-" + VERSION;

self.addEventListener("install", (event) => {
  event.waitUntil(caches.open(STORE)
    .then((store) => store.addAll(FILES.map((file) => new Request(file, { cache: "no-cache" }))))
    .then(() => self.skipWaiting()));
});

self.addEventListener("activate", (event) => {
  event.waitUntil(caches.keys()
    .then((names) => Promise.all(names
      .filter((name) => name.startsWith("orvelin-board-") && name !== STORE)
      .map((name) => caches.delete(name))))
    .then(() => self.clients.claim()));
});

// What is kept is the answer; the network is asked for the rest alone.
self.addEventListener("fetch", (event) => {
  if (event.request.method === "GET") {
    event.respondWith(caches.open(STORE)
      .then((store) => store.match(event.request, { ignoreSearch: true }))
      .then((kept) => kept ?? fetch(event.request)));
  }
});
