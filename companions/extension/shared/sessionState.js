// Whether the browser watches, and why not. Pure: the moment is handed in, in seconds since 1970.

const sameEnd = 5;

/** The same count-down? A relaunch of TARNE gives a running session another id. */
export function isSameSession(one, other) {
  if (one === null || other === null || one.goals !== other.goals) return false;
  return one.id === other.id || Math.abs(one.ends - other.ends) <= sameEnd;
}

/** Goals without a letter or a digit say nothing that a page could be judged by. */
export function areGoalsAskable(goals) {
  return /[\p{L}\p{N}]/u.test(goals);
}

export const disconnected = Object.freeze({
  isConnected: false, session: null, sessionState: "unknown", server: "unknown",
  failure: null, silentUntil: 0,
});

/** The bridge is there; what it knows comes with its first messages. */
export function connected() {
  return { ...disconnected, isConnected: true };
}

/** The state after a frame that parseFrame has read. An answer without an error changes nothing. */
export function afterFrame(state, frame, now) {
  switch (frame.kind) {
    case "session": {
      const { state: sessionState } = frame;
      if (sessionState !== "active") return { ...state, sessionState, session: null };
      const { id, goals, ends, duration } = frame;
      return { ...state, sessionState, session: { id, goals, ends, duration } };
    }
    case "server":
      return { ...state, server: frame.state, failure: null, silentUntil: 0 };
    default:
      return frame.error === undefined ? state : afterError(state, frame, now);
  }
}

// For how many seconds nothing more is asked. The other errors say nothing about the next page.
const silences = { quota: 60, no_key: 60, offline: 15, model: 15, no_server: 5 };

function afterError(state, { error, retryAfter }, now) {
  if (!Object.hasOwn(silences, error)) return state;
  const silence = retryAfter > 0 ? retryAfter : silences[error];
  return { ...state, failure: error, silentUntil: now + silence };
}

/** Why nothing is asked: "absent", "no_key", "quota", "offline", "model", "no_server"; else null. */
export function blindness(state, now) {
  if (state.server !== "ready") return state.server === "no_key" ? "no_key" : "absent";
  // A clock that was set back must not keep the silence up for longer than it was meant.
  const isSilent = state.failure !== null && now < state.silentUntil
    && state.silentUntil - now <= 86400;
  return isSilent ? state.failure : null;
}

/** One word for all that follows: "offline", "unavailable", "idle", "off", "blind", "watching". */
export function phaseOf(state, isOff, now) {
  if (!state.isConnected) return "offline";
  if (state.sessionState === "unavailable") return "unavailable";
  if (state.session === null) return "idle";
  if (isOff) return "off";
  return blindness(state, now) === null ? "watching" : "blind";
}

/** Whole minutes until the end, rounded up, never below 0. */
export function minutesLeft(ends, now) {
  return Math.max(0, Math.ceil((ends - now) / 60));
}
