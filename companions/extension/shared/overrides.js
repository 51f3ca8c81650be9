// Pages that the user has called on task, for the goals of that moment. They outlive the session, so
// that nobody teaches the same manual every day. Neither goals nor address can be read from what is
// kept: each is a salted hash.

const lifetime = 30 * 86400;
export const overrideLimit = 5000;

/** The name under which an override is kept. */
export async function overrideKey(salt, goals, address) {
  const bytes = new TextEncoder().encode(JSON.stringify([salt, goals, address]));
  const digest = new Uint8Array(await crypto.subtle.digest("SHA-256", bytes));
  return [...digest].map((byte) => byte.toString(16).padStart(2, "0")).join("");
}

export function newSalt() {
  return crypto.randomUUID();
}

/** `kept` with one more override, without the ones that are over and, at the limit, the oldest. */
export function withOverride(kept, key, now) {
  const others = Object.entries(kept).filter(([other]) => other !== key && isLive(kept, other, now));
  const newest = others.sort(([, one], [, other]) => other - one).slice(0, overrideLimit - 1);
  return Object.fromEntries([...newest, [key, now]]);
}

/** An override counts for 30 days; one from the future does not, since it would never end. */
export function isLive(kept, key, now) {
  const made = Object.hasOwn(kept, key) ? kept[key] : undefined;
  return Number.isFinite(made) && made <= now + 86400 && now - made < lifetime;
}
