import assert from "node:assert/strict";
import { test } from "node:test";
import { parseFrame } from "../../../companions/extension/shared/frames.js";

const session = { v: 1, type: "session", state: "active", id: "E6", goals: "Write", ends: 1763800000.5,
  duration: 1500 };
const answer = { v: 1, id: 7, verdict: "off_task", confidence: 0.9, reason: "A game." };

test("a session, a server and an answer are read", () => {
  assert.deepEqual(parseFrame(session), { kind: "session", state: "active", id: "E6", goals: "Write",
    ends: 1763800000.5, duration: 1500 });
  assert.deepEqual(parseFrame({ v: 1, type: "session", state: "inactive", goals: "left over" }),
    { kind: "session", state: "inactive" });
  assert.deepEqual(parseFrame({ v: 1, type: "server", state: "no_key", more: 1 }),
    { kind: "server", state: "no_key" });
  assert.deepEqual(parseFrame({ ...answer, source: "cache" }), { kind: "answer", id: 7,
    verdict: "off_task", confidence: 0.9, reason: "A game." });
  assert.deepEqual(parseFrame({ v: 1, id: 9, ok: true }), { kind: "answer", id: 9, ok: true });
});

const strange = [null, undefined, 7, "text", [], {}, { v: 2, type: "session", state: "inactive" },
  { type: "server", state: "ready" }, { v: 1, type: "server", state: "perhaps" },
  { v: 1, type: "session", state: "paused" }, { v: 1 }, { v: 1, id: "7", verdict: "on_task" },
  { v: 1, id: 1.5 }, { ...session, id: "" }, { ...session, goals: 7 }, { ...session, ends: "soon" },
  { ...session, ends: NaN }, { ...session, ends: Infinity }, { ...session, duration: -1 },
  { ...session, goals: null }, { v: 1, type: "hello" }];
strange.forEach((frame, index) => {
  test(`frame ${index} of a stranger changes nothing`, () => assert.equal(parseFrame(frame), null));
});

for (const broken of [{ verdict: "block" }, { confidence: 1.01 }, { confidence: -0.1 },
  { confidence: "0.9" }, { confidence: null }, { confidence: NaN }, { reason: 7 }, { reason: undefined },
  { verdict: undefined }]) {
  test(`an answer with ${JSON.stringify(broken)} is unsure`, () => {
    assert.deepEqual(parseFrame({ ...answer, ...broken }),
      { kind: "answer", id: 7, verdict: "unsure", confidence: 0, reason: "" });
  });
}

test("an error keeps its name and a waiting time that can be believed", () => {
  assert.deepEqual(parseFrame({ v: 1, id: 7, error: "quota", retry_after: 60 }),
    { kind: "answer", id: 7, error: "quota", retryAfter: 60 });
  assert.equal(parseFrame({ v: 1, id: 7, error: "quota", retry_after: 1e12 }).retryAfter, 86400);
  for (const retry_after of [-5, "60", null, Infinity]) {
    assert.equal(parseFrame({ v: 1, id: 7, error: "quota", retry_after }).retryAfter, 0);
  }
  assert.equal(parseFrame({ v: 1, id: 7, error: "disaster" }).verdict, "unsure");
});

test("goals and reasons of megabytes are cut", () => {
  assert.equal(parseFrame({ ...session, goals: "g".repeat(1_000_000) }).goals.length, 2000);
  assert.equal(parseFrame({ ...answer, reason: "r".repeat(1_000_000) }).reason.length, 120);
});
