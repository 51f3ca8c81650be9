// What a background knows that has its bridge, in the hands of a test.

import { webcrypto } from "node:crypto";
import { Knowledge } from "../../../companions/extension/background/knowledge.js";
import { parseFrame } from "../../../companions/extension/shared/frames.js";

// Debian's runtime has it under this name only.
globalThis.crypto ??= webcrypto;

/** A storage as the browser's: what is stored is a copy. */
function makeArea(content = {}) {
  return { content,
    get: async (keys) => Object.fromEntries(keys.filter((key) => key in content)
      .map((key) => [key, structuredClone(content[key])])),
    set: async (values) => { Object.assign(content, structuredClone(values)); } };
}

export async function makeKnowledge({ local = makeArea(), session = makeArea() } = {}) {
  const time = { now: 1_000_000 };
  const knowledge = new Knowledge({ storage: { local, session }, clock: () => time.now });
  await knowledge.load();
  const say = (frame) => knowledge.takeFrame(parseFrame({ v: 1, ...frame }));
  const start = (goals = "Write", id = "A") => say({ type: "session", state: "active", id, goals,
    ends: time.now + 1500, duration: 1500 });
  return { knowledge, time, say, start, areas: { local, session } };
}

/** The same in a running session, with a server. */
export async function watching(areas) {
  const made = await makeKnowledge(areas);
  made.start();
  made.say({ type: "server", state: "ready" });
  return made;
}
