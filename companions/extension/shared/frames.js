// The words of the bridge. A frame of another version, or one that is not exactly as told, is null:
// it changes nothing.

import { clipped } from "./disclosure.js";

const sessionStates = ["active", "inactive", "unavailable"];
const serverStates = ["ready", "no_key", "absent"];
const verdicts = ["on_task", "off_task", "unsure"];
const errors = ["no_key", "quota", "offline", "model", "bad_request", "no_session", "no_goals",
  "no_server"];
const reasonLimit = 120;
const goalsLimit = 2000;
const idLimit = 100;

/** What a frame says: {kind: "session" | "server" | "answer", ...}, or null. */
export function parseFrame(frame) {
  if (typeof frame !== "object" || frame === null || frame.v !== 1) return null;
  if (frame.type === "session") return parseSession(frame);
  if (frame.type === "server") {
    return serverStates.includes(frame.state) ? { kind: "server", state: frame.state } : null;
  }
  return Number.isSafeInteger(frame.id) ? parseAnswer(frame) : null;
}

function parseSession(frame) {
  if (!sessionStates.includes(frame.state)) return null;
  if (frame.state !== "active") return { kind: "session", state: frame.state };
  const { id, goals, ends, duration } = frame;
  if (typeof id !== "string" || id === "" || typeof goals !== "string") return null;
  if (!Number.isFinite(ends) || !Number.isFinite(duration) || duration < 0) return null;
  return { kind: "session", state: "active", id: id.slice(0, idLimit),
    goals: goals.slice(0, goalsLimit), ends, duration };
}

function parseAnswer(frame) {
  const answer = { kind: "answer", id: frame.id };
  if (errors.includes(frame.error)) {
    const seconds = frame.retry_after;
    const retryAfter = Number.isFinite(seconds) && seconds > 0 ? Math.min(seconds, 86400) : 0;
    return { ...answer, error: frame.error, retryAfter };
  }
  if (frame.ok === true) return { ...answer, ok: true };
  const { verdict, confidence, reason } = frame;
  const isWhole = verdicts.includes(verdict) && Number.isFinite(confidence) && confidence >= 0
    && confidence <= 1 && typeof reason === "string";
  // The question is answered, and nothing can be made of it: nobody is kept from a page for that.
  if (!isWhole) return { ...answer, verdict: "unsure", confidence: 0, reason: "" };
  return { ...answer, verdict, confidence, reason: clipped(reason, reasonLimit) };
}
