// What leaves the browser about a page. Nothing else in the extension makes the `page` of a question.

import { isPublic, webAddress } from "./address.js";

/** What the user lets out, from the least to the most. */
export const levels = ["host", "path", "title"];

const titleLimit = 200;
const descriptionLimit = 300;
const pathLimit = 1024;
const originLimit = 300;
const secretLength = 20;

/**
 * The part of a page that may be told at this level, or null where the page must not be asked about.
 *
 * A query is never told. Where the title is not told either, nothing would tell two queries apart,
 * so a page with a query is not asked about at all.
 */
export function disclosedPage({ address, title, description }, level) {
  const url = webAddress(address);
  if (url === null || !isPublic(address) || !levels.includes(level)) return null;
  if (level !== "title" && url.search !== "") return null;
  if (url.origin.length > originLimit) return null;
  const page = { origin: url.origin, path: "/", title: "", description: "" };
  if (level !== "host") page.path = maskedPath(url.pathname);
  if (level === "title") {
    page.title = clipped(title, titleLimit);
    page.description = clipped(description, descriptionLimit);
  }
  return page;
}

/** The path with "*" for each segment that may be a secret: long, and of digits and letters mixed. */
export function maskedPath(path) {
  const masked = path.split("/").map((segment) => (mayBeSecret(segment) ? "*" : segment)).join("/");
  return masked.length <= pathLimit ? masked : masked.slice(0, masked.lastIndexOf("/", pathLimit - 1) + 1);
}

// An encoded letter of another script has digits in its code and none in itself, so it is decoded first.
function mayBeSecret(segment) {
  let text = segment;
  try {
    text = decodeURIComponent(segment);
  } catch {
    // No text; looked at as it stands.
  }
  return [...text].length >= secretLength && /\p{Nd}/u.test(text) && /\p{L}/u.test(text);
}

/** One line of at most `limit` UTF-16 units, never cut inside of a character. */
export function clipped(text, limit) {
  if (typeof text !== "string") return "";
  // A page may have a title of megabytes; what lies far behind the limit is not even looked at.
  const line = text.slice(0, limit * 20).replace(/\p{Cs}/gu, "\ufffd")
    .replace(/[\s\p{Cc}]+/gu, " ").trim();
  const cut = line.slice(0, limit);
  return /[\ud800-\udbff]$/.test(cut) ? cut.slice(0, -1) : cut;
}
