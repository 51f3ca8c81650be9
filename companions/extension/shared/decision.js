// What becomes of a page. Pure; everything that counts is handed in.

import { isPublic, siteOf } from "./address.js";
import { covers } from "./siteList.js";

const blockFrom = 0.7;
const doubtFrom = 0.5;

/**
 * The decision about the page at an identity:
 *   {action: "pass"}, {action: "block", why: "list" | "verdict"}, {action: "strip"} or {action: "ask"}.
 *
 * The order is the promise: what the user allows passes, what the user blocks is blocked also without
 * a server, and a page that was answered is not asked about again.
 */
export function decide({ address, phase, allowList, blockList, grants, verdict, now }) {
  if (phase !== "watching" && phase !== "blind") return { action: "pass" };
  if (covers(allowList, address) || isGranted(grants, address, now)) return { action: "pass" };
  if (covers(blockList, address)) return { action: "block", why: "list" };
  if (phase === "blind" || !isPublic(address)) return { action: "pass" };
  if (verdict === undefined) return { action: "ask" };
  return decideByVerdict(verdict);
}

function decideByVerdict({ verdict, confidence }) {
  if (verdict !== "off_task" || confidence < doubtFrom) return { action: "pass" };
  return confidence >= blockFrom ? { action: "block", why: "verdict" } : { action: "strip" };
}

/** A verdict that keeps the user from the page. */
export function isBlocking(verdict) {
  return decideByVerdict(verdict).action === "block";
}

export const grantLength = 600;

/** Whether the page's site was let through for some minutes; `grants` maps a site to its end. */
export function isGranted(grants, address, now) {
  const host = siteOf(address);
  return host !== null && liveGrants(grants, now)
    .some((site) => host === site || host.endsWith(`.${site}`));
}

/** The sites whose minutes are not over. A clock that was set back prolongs nothing. */
export function liveGrants(grants, now) {
  return Object.entries(grants)
    .filter(([, until]) => until > now && until - now <= grantLength)
    .map(([site]) => site);
}
