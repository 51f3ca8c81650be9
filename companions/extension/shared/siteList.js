// The user's two lists of sites. An entry is a host, which covers its subdomains, and perhaps the
// beginning of a path: "example.org", "example.org/forum".

import { webAddress, withoutWww } from "./address.js";

export const listLimit = 500;

/** The entry that a typed text or a pasted address means, or null where it means none. */
export function parseEntry(text) {
  const typed = text.trim();
  if (typed === "" || /\s/.test(typed)) return null;
  const url = webAddress(/^[a-z][a-z0-9+.-]*:\/\//i.test(typed) ? typed : `https://${typed}`);
  if (url === null || !isHost(url.hostname)) return null;
  const path = url.pathname.replace(/\/+$/, "");
  return withoutWww(url.hostname) + path;
}

function isHost(host) {
  return host.startsWith("[") || (host.includes(".") && /^[a-z0-9._-]+$/.test(host));
}

/** Whether an entry of the list covers the page at this address. */
export function covers(list, address) {
  const url = webAddress(address);
  return url !== null && list.some((entry) => entryCovers(entry, url));
}

/** Host and path of an entry; the path is empty where the entry is a whole site. */
export function partsOf(entry) {
  const slash = entry.indexOf("/");
  return slash < 0 ? { host: entry, path: "" }
    : { host: entry.slice(0, slash), path: entry.slice(slash) };
}

function entryCovers(entry, url) {
  const { host, path } = partsOf(entry);
  if (url.hostname !== host && !url.hostname.endsWith(`.${host}`)) return false;
  return path === "" || url.pathname === path || url.pathname.startsWith(`${path}/`);
}

/** Whether there may be a page that both entries cover. */
export function overlap(one, other) {
  const [{ host, path }, { host: otherHost, path: otherPath }] = [partsOf(one), partsOf(other)];
  const areHostsNested = `.${host}`.endsWith(`.${otherHost}`) || `.${otherHost}`.endsWith(`.${host}`);
  return areHostsNested && (`${path}/`.startsWith(`${otherPath}/`) || `${otherPath}/`.startsWith(`${path}/`));
}

/** The list with the entry, in the order of the alphabet and each entry once. */
export function withEntry(list, entry) {
  return [...new Set([...list, entry])].sort().slice(0, listLimit);
}

export function withoutEntry(list, entry) {
  return list.filter((other) => other !== entry);
}

/** A stored value as a list; what is no entry is left out. */
export function listFrom(stored) {
  if (!Array.isArray(stored)) return [];
  const entries = stored.filter((entry) => typeof entry === "string" && parseEntry(entry) === entry);
  return [...new Set(entries)].sort().slice(0, listLimit);
}
