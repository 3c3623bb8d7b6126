// What a module of WebAssembly asks of its system beside its own imports: the time. All else is not
// there; chance among it, which node 18 has elsewhere than a page.

const SUCCESS = 0;
const NOT_THERE = 52;

/** The imports of a compiled module but those of the spaces named, by space and name. */
export function systemOf(module, memory, ...others) {
  const view = () => new DataView(memory().buffer);
  const nothing = (number, size) => {
    view().setUint32(number, 0, true);
    view().setUint32(size, 0, true);
    return SUCCESS;
  };
  const known = {
    clock_time_get(id, precision, place) {
      const time = id === 0 ? Date.now() : performance.now();
      view().setBigUint64(place, BigInt(Math.round(time * 1e6)), true);
      return SUCCESS;
    },
    environ_sizes_get: nothing,
    environ_get: () => SUCCESS,
    emscripten_notify_memory_growth() {},
    proc_exit(status) {
      throw new Error("the module ended with status " + status);
    },
  };
  const imports = {};
  for (const { module: space, name, kind } of WebAssembly.Module.imports(module)) {
    if (kind === "function" && !others.includes(space)) {
      imports[space] ??= {};
      imports[space][name] =
        known[name] ?? (() => (space.startsWith("wasi") ? NOT_THERE : -NOT_THERE));
    }
  }
  return imports;
}

/** Loads a module from where it lies; in node from a file. */
export async function loadModule(place) {
  if (place.protocol === "file:") {
    const { readFile } = await import("node:fs/promises");
    return WebAssembly.compile(await readFile(place));
  }
  const answer = await fetch(place);
  if (!answer.ok) {
    throw new Error(`${place}: ${answer.status}`);
  }
  // Compiled while it comes, where the host names its type.
  return answer.headers.get("Content-Type") === "application/wasm"
    ? WebAssembly.compileStreaming(answer) : WebAssembly.compile(await answer.arrayBuffer());
}
