// The browser's own rules, by which a known page is stopped before any request leaves.

import { partsOf } from "./siteList.js";

export const ruleLimit = 1000;

/**
 * All rules for what is known now, at most `ruleLimit`: the block list first, then the verdicts,
 * the newest of which come first in `addresses`. What passes anyway has no rule.
 */
export function rulesFor({ addresses, blockList, passingSites }) {
  const conditions = [
    ...listConditions(blockList, passingSites),
    ...addresses.filter(isLiteral).flatMap(addressConditions),
  ];
  return conditions.slice(0, ruleLimit).map((condition, index) => ({
    id: index + 1,
    priority: 1,
    action: { type: "block" },
    // A form's data would be lost with a stopped POST.
    condition: { ...condition, resourceTypes: ["main_frame"], requestMethods: ["get"] },
  }));
}

// In a filter these three mean something else than themselves, so such an address gets no rule and
// is stopped when it has come.
function isLiteral(address) {
  return !/[*|^]/.test(address) && isAscii(address);
}

function isAscii(text) {
  return /^[\x21-\x7e]*$/.test(text);
}

// Without the second bar a filter would also stop every address that begins like this one; with it
// the address with a fragment needs a filter of its own.
function addressConditions(address) {
  return [`|${address}|`, `|${address}#`]
    .map((urlFilter) => ({ urlFilter, isUrlFilterCaseSensitive: true }));
}

function listConditions(blockList, passingSites) {
  const excluded = passingSites.length > 0 ? { excludedRequestDomains: passingSites } : {};
  const entries = blockList.map(partsOf).filter(({ host }) => isAscii(host) && !host.startsWith("["));
  const hosts = entries.filter(({ path }) => path === "").map(({ host }) => host);
  const whole = hosts.length > 0 ? [{ requestDomains: hosts, ...excluded }] : [];
  const parts = entries.filter(({ path }) => path !== "" && isLiteral(path))
    .map(({ host, path }) => ({ requestDomains: [host], regexFilter: pathPattern(path),
      isUrlFilterCaseSensitive: true, ...excluded }));
  return [...whole, ...parts];
}

function pathPattern(path) {
  return `^https?://[^/]+${path.replace(/[.*+?^${}()|[\]\\]/g, "\\$&")}(?:[/?#]|$)`;
}
