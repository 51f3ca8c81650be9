import assert from "node:assert/strict";
import { test } from "node:test";
import { VerdictStore, verdictLimit } from "../../../companions/extension/shared/verdictStore.js";

const verdict = { verdict: "off_task", confidence: 0.9, reason: "" };

test("at the limit the oldest verdict goes first", () => {
  const store = new VerdictStore();
  for (let index = 0; index <= verdictLimit; index += 1) store.set(`https://example.org/${index}`, verdict);
  assert.equal(store.entries.length, verdictLimit);
  assert.equal(store.get("https://example.org/0"), undefined);
  assert.equal(store.addresses(() => true)[0], `https://example.org/${verdictLimit}`);
});

test("a verdict that is set again is the newest", () => {
  const store = new VerdictStore([["a", verdict], ["b", verdict]]);
  store.set("a", verdict);
  assert.deepEqual(store.addresses(() => true), ["a", "b"]);
});

test("what it gives out it takes back in", () => {
  const store = new VerdictStore([["a", verdict], ["b", { ...verdict, verdict: "on_task" }]]);
  const again = new VerdictStore(JSON.parse(JSON.stringify(store.entries)));
  assert.deepEqual(again.entries, store.entries);
  assert.deepEqual(again.addresses((known) => known.verdict === "on_task"), ["b"]);
});

test("a stored value that is damaged is left out", () => {
  for (const stored of [null, "x", 7, {}, [null], [["a"]], [[7, verdict]], [["a", { verdict: 3 }]]]) {
    assert.deepEqual(new VerdictStore(stored).entries, []);
  }
});
