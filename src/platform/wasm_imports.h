#pragma once

// What the page gives the module: functions of web/engine/worker.mjs.

#define ORVELIN_IMPORT(name) __attribute__((import_module("orvelin"), import_name(name)))

extern "C" {

/// Takes bytes that go out.
ORVELIN_IMPORT("write") void orvelin_write(char const* bytes, int number);
/// Whether there are bytes to read, or are within so many milliseconds; below 0 is for ever.
ORVELIN_IMPORT("wait") int orvelin_wait(double milliseconds);
/// Puts bytes that came in at a place with so much room and returns their number.
ORVELIN_IMPORT("read") int orvelin_read(char* to, int room);
/// Whether wait() can wait.
ORVELIN_IMPORT("can_wait") int orvelin_can_wait();
}

#undef ORVELIN_IMPORT
