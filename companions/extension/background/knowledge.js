// All that the background knows, and the two storages that it outlives a restart in: what belongs to
// the session in `storage.session`, which is memory, and what the user has chosen in `storage.local`.

import { decide, grantLength, isBlocking, liveGrants } from "../shared/decision.js";
import { identityOf, siteOf } from "../shared/address.js";
import { isLive, newSalt, overrideKey, withOverride } from "../shared/overrides.js";
import { settingsFrom } from "../shared/settings.js";
import { overlap } from "../shared/siteList.js";
import { afterFrame, blindness, connected, disconnected, isSameSession, phaseOf }
  from "../shared/sessionState.js";
import { VerdictStore } from "../shared/verdictStore.js";
import { isReachedByForm } from "../shared/visit.js";

function emptyMemory() {
  return { session: null, grants: {}, isOff: false, isBlindnessTold: false, overridesOfSite: {},
    records: {}, visits: {} };
}

export class Knowledge {
  #storage;
  #clock;
  #state = disconnected;
  #settings = settingsFrom(undefined);
  #overrides = { salt: "", kept: {} };
  #memory = emptyMemory();
  #verdicts = new VerdictStore();

  /** `clock` gives the moment in seconds since 1970. */
  constructor({ storage, clock }) {
    this.#storage = storage;
    this.#clock = clock;
  }

  async load() {
    const { settings, overrides } = await this.#storage.local.get(["settings", "overrides"]);
    this.#settings = settingsFrom(settings);
    this.#overrides = typeof overrides?.salt === "string" && typeof overrides.kept === "object"
      ? overrides : { salt: newSalt(), kept: {} };
    const { memory, verdicts } = await this.#storage.session.get(["memory", "verdicts"]);
    this.#memory = { ...emptyMemory(), ...memory };
    this.#verdicts = new VerdictStore(verdicts);
  }

  // -- the session -------------------------------------------------------------------------------

  get phase() {
    return phaseOf(this.#state, this.#memory.isOff, this.#clock());
  }

  get blindness() {
    return blindness(this.#state, this.#clock());
  }

  get session() {
    return this.#state.session;
  }

  /** Takes in what the bridge says about the session or the server. */
  takeFrame(frame) {
    const state = this.#state.isConnected ? this.#state : connected();
    this.#state = afterFrame(state, frame, this.#clock());
    const { session } = this.#state;
    if (session === null) return;
    if (!isSameSession(this.#memory.session, session)) {
      const { records, visits } = this.#memory;
      this.#memory = { ...emptyMemory(), records, visits };
      this.#verdicts.clear();
      this.#keepVerdicts();
    }
    this.#memory.session = session;
    this.#keep();
  }

  /** Takes in why a question has no answer. Gives whether anything follows from it. */
  takeError(answer) {
    const before = this.#state;
    if (before.isConnected) this.#state = afterFrame(before, answer, this.#clock());
    return this.#state !== before;
  }

  /** For how many seconds more nothing is asked after an error, or null. */
  get silence() {
    const { failure, silentUntil } = this.#state;
    const left = silentUntil - this.#clock();
    return failure === null || left <= 0 ? null : left;
  }

  loseBridge() {
    this.#state = disconnected;
  }

  turnOff(isOff) {
    this.#memory.isOff = isOff;
    this.#keep();
  }

  get isBlindnessTold() {
    return this.#memory.isBlindnessTold;
  }

  setBlindnessTold() {
    this.#memory.isBlindnessTold = true;
    this.#keep();
  }

  // -- the user's choices ------------------------------------------------------------------------

  get settings() {
    return this.#settings;
  }

  changeSettings(changes) {
    this.#settings = settingsFrom({ ...this.#settings, ...changes });
    return this.#storage.local.set({ settings: this.#settings });
  }

  get overrideCount() {
    return Object.keys(this.#overrides.kept).length;
  }

  forgetOverrides() {
    this.#overrides = { salt: newSalt(), kept: {} };
    return this.#storage.local.set({ overrides: this.#overrides });
  }

  async isOverridden(address) {
    const key = await overrideKey(this.#overrides.salt, this.#memory.session.goals, address);
    return isLive(this.#overrides.kept, key, this.#clock());
  }

  async override(address) {
    const { session, overridesOfSite } = this.#memory;
    const site = siteOf(address);
    overridesOfSite[site] = (overridesOfSite[site] ?? 0) + 1;
    this.#keep();
    this.setVerdict(address, { verdict: "on_task", confidence: 1, reason: "", isByUser: true });
    const { salt, kept } = this.#overrides;
    const key = await overrideKey(salt, session.goals, address);
    this.#overrides = { salt, kept: withOverride(kept, key, this.#clock()) };
    await this.#storage.local.set({ overrides: this.#overrides });
  }

  /** How many pages of this page's site the user has let through in this session. */
  overridesOfSite(address) {
    return this.#memory.overridesOfSite[siteOf(address)] ?? 0;
  }

  grant(address) {
    this.#memory.grants[siteOf(address)] = this.#clock() + grantLength;
    this.#keep();
  }

  /** The moment in seconds at which the next site's minutes are over, or null. */
  get nextGrantEnd() {
    const ends = liveGrants(this.#memory.grants, this.#clock())
      .map((site) => this.#memory.grants[site]);
    return ends.length > 0 ? Math.min(...ends) : null;
  }

  // -- pages -------------------------------------------------------------------------------------

  verdict(address) {
    return this.#verdicts.get(address);
  }

  setVerdict(address, verdict) {
    this.#verdicts.set(address, verdict);
    this.#keepVerdicts();
  }

  forgetVerdict(address) {
    this.#verdicts.forget(address);
    this.#keepVerdicts();
  }

  decide(address) {
    return decide({ address, phase: this.phase, ...this.#settings, grants: this.#memory.grants,
      verdict: this.#verdicts.get(address), now: this.#clock() });
  }

  /** What the rules are made of, or null where nothing is blocked. */
  get blockedNow() {
    if (this.phase !== "watching" && this.phase !== "blind") return null;
    const { allowList, blockList } = this.#settings;
    const granted = liveGrants(this.#memory.grants, this.#clock());
    const wholeSites = allowList.filter((entry) => !entry.includes("/"));
    const addresses = this.#verdicts.addresses(isBlocking)
      .filter((address) => this.decide(address).action === "block");
    // A rule for a site would stop the allowed part of it as well.
    const allowedParts = allowList.filter((entry) => entry.includes("/"));
    const isPartlyAllowed = (entry) => allowedParts.some((allowed) => overlap(entry, allowed));
    return { addresses, blockList: blockList.filter((entry) => !isPartlyAllowed(entry)),
      passingSites: [...new Set([...wholeSites, ...granted])] };
  }

  // -- tabs --------------------------------------------------------------------------------------

  /** What a tab was kept from: {url, why, reason}. */
  record(tabId) {
    return this.#memory.records[tabId];
  }

  setRecord(tabId, record) {
    this.#memory.records[tabId] = record;
    this.#keep();
  }

  noteVisit(tabId, { url, transition }) {
    const address = identityOf(url);
    const isByForm = isReachedByForm(this.#memory.visits[tabId], { address, transition });
    this.#memory.visits[tabId] = { address, isByForm };
    this.#keep();
  }

  isByForm(tabId) {
    return this.#memory.visits[tabId]?.isByForm === true;
  }

  forgetTab(tabId) {
    delete this.#memory.records[tabId];
    delete this.#memory.visits[tabId];
    this.#keep();
  }

  #keep() {
    void this.#storage.session.set({ memory: this.#memory });
  }

  // Apart from the rest, which changes with every page.
  #keepVerdicts() {
    void this.#storage.session.set({ verdicts: this.#verdicts.entries });
  }
}
