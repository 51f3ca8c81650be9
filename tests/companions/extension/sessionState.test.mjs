import assert from "node:assert/strict";
import { test } from "node:test";
import { parseFrame } from "../../../companions/extension/shared/frames.js";
import { afterFrame, areGoalsAskable, blindness, connected, disconnected, isSameSession, minutesLeft,
  phaseOf } from "../../../companions/extension/shared/sessionState.js";

const now = 1_000_000;
const frames = {
  active: { v: 1, type: "session", state: "active", id: "A", goals: "Write", ends: now + 600, duration: 1500 },
  inactive: { v: 1, type: "session", state: "inactive" },
  unavailable: { v: 1, type: "session", state: "unavailable" },
  ready: { v: 1, type: "server", state: "ready" },
  no_key: { v: 1, type: "server", state: "no_key" },
  absent: { v: 1, type: "server", state: "absent" },
  quota: { v: 1, id: 1, error: "quota", retry_after: 30 },
  offline: { v: 1, id: 1, error: "offline" },
  bad_request: { v: 1, id: 1, error: "bad_request" },
  no_session: { v: 1, id: 1, error: "no_session" },
  verdict: { v: 1, id: 1, verdict: "on_task", confidence: 1, reason: "" },
};

function after(...names) {
  return names.reduce((state, name) => afterFrame(state, parseFrame(frames[name]), now), connected());
}

function phase(names, { at = now, isOff = false } = {}) {
  return phaseOf(after(...names), isOff, at);
}

test("without a bridge the phase is offline", () => {
  assert.equal(phaseOf(disconnected, false, now), "offline");
});

for (const [names, expected] of [
  [[], "idle"],
  [["unavailable", "absent"], "unavailable"],
  [["inactive", "ready"], "idle"],
  [["active"], "blind"],
  [["active", "ready"], "watching"],
  [["active", "no_key"], "blind"],
  [["active", "absent"], "blind"],
  [["active", "ready", "inactive"], "idle"],
  [["active", "ready", "unavailable"], "unavailable"],
  [["active", "ready", "inactive", "active"], "watching"],
  [["active", "ready", "quota"], "blind"],
  [["active", "ready", "offline"], "blind"],
  [["active", "ready", "bad_request"], "watching"],
  [["active", "ready", "no_session"], "watching"],
  [["active", "ready", "verdict"], "watching"],
  [["active", "ready", "quota", "verdict"], "blind"],
  [["active", "no_key", "ready"], "watching"],
  [["active", "ready", "quota", "ready"], "watching"],
]) {
  test(`after ${names.join(", ") || "nothing"} the phase is ${expected}`, () => {
    assert.equal(phase(names), expected);
  });
}

test("off for this session passes for everything but the lack of a session", () => {
  assert.equal(phase(["active", "ready"], { isOff: true }), "off");
  assert.equal(phase(["active", "absent"], { isOff: true }), "off");
  assert.equal(phase(["inactive", "ready"], { isOff: true }), "idle");
});

test("a silence ends by itself and tells its reason while it lasts", () => {
  assert.equal(blindness(after("active", "ready", "quota"), now + 29), "quota");
  assert.equal(blindness(after("active", "ready", "quota"), now + 30), null);
  assert.equal(phase(["active", "ready", "quota"], { at: now + 31 }), "watching");
});

test("a clock that is set back by a day keeps no silence up", () => {
  assert.equal(blindness(after("active", "ready", "quota"), now - 90000), null);
});

test("a relaunch gives a running session another id, and it stays the same session", () => {
  const one = { id: "A", goals: "Write", ends: 100 };
  assert.ok(isSameSession(one, { id: "B", goals: "Write", ends: 104 }));
  assert.ok(isSameSession(one, { id: "A", goals: "Write", ends: 900 }));
  assert.ok(!isSameSession(one, { id: "B", goals: "Write", ends: 106 }));
  assert.ok(!isSameSession(one, { id: "A", goals: "Read", ends: 100 }));
  assert.ok(!isSameSession(null, one));
});

test("goals need a letter or a digit of any script", () => {
  for (const goals of ["Write", "中文", "3", "ä"]) assert.ok(areGoalsAskable(goals), goals);
  for (const goals of ["", ",", "  ", "!?", "🙂"]) assert.ok(!areGoalsAskable(goals), goals);
});

test("minutes are rounded up and never below zero", () => {
  assert.equal(minutesLeft(now + 61, now), 2);
  assert.equal(minutesLeft(now + 60, now), 1);
  assert.equal(minutesLeft(now - 5, now), 0);
});
