// The block page. It reads nothing from its own address: the background knows what this tab was kept
// from, and the page keeps that with its own place in the tab's history. It leaves to pages of the web only.

import { ask, browser, byId, fillTexts, isAlone, onChange, show, text } from "./page.js";
import { webAddress } from "../shared/address.js";

const breath = 5;
// Chromium keeps the page that was left in its history, before this one.
const stepsBack = typeof browser.runtime.getBrowserInfo === "function" ? 1 : 2;
const historyPatience = 700;

let countdown;

async function look() {
  // A tab that nobody sees goes back when it is shown.
  if (document.visibilityState !== "visible") return;
  const record = await ask("record", { ownUrl: history.state?.url ?? null });
  const url = webAddress(record?.url ?? "");
  if (url === null) {
    showNothing();
    return;
  }
  if (!record.isBlocked) {
    location.replace(url.href);
    return;
  }
  showRecord(record);
  if (history.state?.url !== url.href) history.replaceState({ url: url.href }, "");
}

function showNothing() {
  show(byId("heading"), text("blockNothing"));
  for (const id of ["onTask", "allowSite", "grant", "askAgain"]) byId(id).hidden = true;
  document.querySelector("dl").hidden = true;
  reveal();
}

function showRecord({ site, why, reason, goals, minutes, isSiteOfferedFirst }) {
  const isListed = why === "list";
  show(byId("heading"), text(isListed ? "blockHeadingList" : "blockHeading", site));
  show(byId("reason"), isListed || reason === "" ? "" : text("modelSays", reason));
  show(byId("goals"), goals);
  show(byId("time"), text("minutes", `${minutes}`));
  show(byId("allowSite"), text("blockAllowSite", site));
  // What the user's own list says is not for the model to take back.
  byId("onTask").hidden = isListed;
  byId("askAgain").hidden = isListed;
  if (isSiteOfferedFirst) byId("back").after(byId("allowSite"));
  document.title = `${text("blockTitle")}: ${site}`;
  reveal();
}

function reveal() {
  const page = byId("page");
  if (!page.hidden) return;
  page.hidden = false;
  byId("back").focus();
}

function goBack() {
  history.go(-stepsBack);
  // Where there is no such page nothing happens, and nothing says so.
  const timer = setTimeout(() => ask("block/newTab"), historyPatience);
  window.addEventListener("beforeunload", () => clearTimeout(timer), { once: true });
}

function toggleBreath() {
  if (countdown !== undefined) {
    stopBreath();
    byId("status").textContent = text("blockGrantCancelled");
    return;
  }
  let seconds = breath;
  byId("status").textContent = text("blockGrantBreath");
  show(byId("grant"), text("blockGrantCount", `${seconds}`));
  countdown = setInterval(() => {
    seconds -= 1;
    if (seconds > 0) {
      show(byId("grant"), text("blockGrantCount", `${seconds}`));
      return;
    }
    stopBreath();
    void ask("block/grant");
  }, 1000);
}

function stopBreath() {
  clearInterval(countdown);
  countdown = undefined;
  show(byId("grant"), text("blockGrant"));
}

if (isAlone()) {
  fillTexts();
  byId("back").addEventListener("click", goBack);
  byId("grant").addEventListener("click", toggleBreath);
  for (const id of ["onTask", "allowSite", "askAgain"]) {
    byId(id).addEventListener("click", () => ask(`block/${id}`));
  }
  onChange(look);
  document.addEventListener("visibilitychange", look);
  // The page may come back as it was left.
  window.addEventListener("pageshow", look);
  setInterval(look, 30000);
}
