import assert from "node:assert/strict";
import { test } from "node:test";
import { decide, isBlocking } from "../../../companions/extension/shared/decision.js";

const now = 1000;
const off = { verdict: "off_task", confidence: 0.9 };
const page = { address: "https://video.example.org/watch?v=1", phase: "watching", allowList: [],
  blockList: [], grants: {}, verdict: undefined, now };

function action(changes) {
  return decide({ ...page, ...changes }).action;
}

test("an unknown page is asked about", () => assert.equal(action({}), "ask"));

for (const [verdict, confidence, expected] of [
  ["off_task", 1, "block"], ["off_task", 0.7, "block"], ["off_task", 0.69, "strip"],
  ["off_task", 0.5, "strip"], ["off_task", 0.49, "pass"], ["off_task", 0, "pass"],
  ["on_task", 1, "pass"], ["unsure", 1, "pass"], ["something", 1, "pass"],
]) {
  test(`${verdict} at ${confidence} means ${expected}`, () => {
    assert.equal(action({ verdict: { verdict, confidence } }), expected);
    assert.equal(isBlocking({ verdict, confidence }), expected === "block");
  });
}

test("the allow list comes before the block list and every verdict", () => {
  const allowList = ["example.org"];
  assert.equal(action({ allowList, blockList: ["video.example.org"], verdict: off }), "pass");
});

test("the block list needs no server and no verdict", () => {
  const blockList = ["example.org"];
  assert.deepEqual(decide({ ...page, blockList, phase: "blind" }), { action: "block", why: "list" });
  assert.equal(action({ blockList, verdict: { verdict: "on_task", confidence: 1 } }), "block");
});

for (const phase of ["offline", "unavailable", "idle", "off"]) {
  test(`everything passes while the phase is ${phase}`, () => {
    assert.equal(action({ phase, blockList: ["example.org"], verdict: off }), "pass");
  });
}

test("a blind session passes what is known and asks nothing", () => {
  assert.equal(action({ phase: "blind", verdict: off }), "pass");
  assert.equal(action({ phase: "blind" }), "pass");
});

test("a grant lets its site through, with the hosts below, until it ends", () => {
  const grants = { "example.org": now + 600 };
  assert.equal(action({ grants, verdict: off }), "pass");
  assert.equal(action({ grants, blockList: ["example.org"] }), "pass");
  assert.equal(action({ grants, verdict: off, now: now + 600 }), "block");
  assert.equal(action({ grants: { "other.org": now + 600 }, verdict: off }), "block");
});

test("a clock that is set back prolongs no grant", () => {
  assert.equal(action({ grants: { "example.org": now + 600 }, verdict: off, now: now - 1 }), "block");
});

test("private pages are never asked about and can be on the block list", () => {
  const address = "http://192.168.0.1/game";
  assert.equal(action({ address }), "pass");
  assert.equal(action({ address, blockList: ["192.168.0.1"] }), "block");
});
