// The popup: the session, this page, and the switches that are needed at once.

import { ask, browser, byId, fillTexts, onChange, show, text } from "./page.js";

let tabId = null;
let site = null;
let lists = {};
let isOff = false;

async function look() {
  const [state, page] = await Promise.all([ask("state"), ask("tab", { tabId })]);
  showSession(state);
  showPage(state, page);
}

function showSession({ phase, blindness, goals, minutes, settings }) {
  show(byId("phase"), text(phase === "blind" ? `blind_${blindness}` : `phase_${phase}`));
  const isRunning = ["watching", "blind", "off"].includes(phase);
  byId("session").hidden = !isRunning;
  byId("goals").textContent = goals;
  byId("time").textContent = text("minutes", `${minutes}`);
  byId("noConsent").hidden = settings.consent !== null;
  isOff = phase === "off";
  byId("off").hidden = !isRunning;
  byId("off").textContent = text(isOff ? "popupOn" : "popupOff");
}

function showPage({ phase }, page) {
  site = page.site;
  byId("page").hidden = site === null;
  if (site === null) return;
  lists = { allow: page.isAllowed, block: page.isListed };
  byId("judge").hidden = page.isBlockPage || phase !== "watching";
  show(byId("verdict"), text(verdictName(page)));
  show(byId("reason"), page.reason === "" ? "" : text("modelSays", page.reason));
  show(byId("allow"), text(lists.allow ? "popupAllowRemove" : "popupAllow", site));
  show(byId("block"), text(lists.block ? "popupBlockRemove" : "popupBlock", site));
}

function verdictName({ isAllowed, isListed, isByUser, verdict }) {
  if (isAllowed) return "verdict_allowed";
  if (isListed) return "verdict_listed";
  if (isByUser) return "verdict_byUser";
  return verdict === null ? "verdict_none" : `verdict_${verdict}`;
}

async function judge() {
  byId("judge").disabled = true;
  byId("verdict").textContent = text("popupJudging");
  const obstacle = await ask("judge", { tabId });
  byId("judge").disabled = false;
  await look();
  if (obstacle !== null) byId("verdict").textContent = text(`obstacle_${obstacle}`);
}

function toggle(list, isThere) {
  return ask(isThere ? "list/remove" : "list/add", { list, entries: [site] });
}

function open(page) {
  void browser.tabs.create({ url: browser.runtime.getURL(`pages/${page}.html`) });
  window.close();
}

fillTexts();
const [tab] = await browser.tabs.query({ active: true, currentWindow: true });
tabId = tab?.id ?? null;
byId("judge").addEventListener("click", judge);
byId("allow").addEventListener("click", () => toggle("allowList", lists.allow));
byId("block").addEventListener("click", () => toggle("blockList", lists.block));
byId("off").addEventListener("click", () => ask("off", { isOff: !isOff }));
byId("readConsent").addEventListener("click", () => open("welcome"));
byId("options").addEventListener("click", () => open("options"));
onChange(look);
await look();
