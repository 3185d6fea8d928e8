// Puts a constructor of the application's own in the place of the page's Notification. Runs at document start in every
// frame. A function of the permission to begin with and of the names of the two message handlers.
(initialPermission, notifyHandler, permissionHandler) => {
  if (window.__tarnNotificationsInstalled) return;
  window.__tarnNotificationsInstalled = true;

  let permission = initialPermission;
  const registry = new Map();
  let nextId = 1;

  // Nothing of this may ever fail in the page's own code.
  const post = (message) => {
    try {
      window.webkit.messageHandlers[notifyHandler].postMessage(message);
    } catch {}
  };

  const callSafely = (notification, handler, event) => {
    try {
      handler.call(notification, event);
    } catch (error) {
      console.error(error);
    }
  };

  class TarnNotification {
    constructor(title, options) {
      options = options || {};
      this.title = String(title);
      this.body = options.body ? String(options.body) : "";
      this.tag = options.tag ? String(options.tag) : "";
      this.icon = options.icon ? String(options.icon) : "";
      this.data = options.data;
      this.silent = Boolean(options.silent);
      this.onclick = null;
      this.onclose = null;
      this.onshow = null;
      this.onerror = null;
      this._id = String(nextId++);
      // No prototype: a page may name an event "constructor".
      this._listeners = Object.create(null);
      registry.set(this._id, this);
      post({ type: "show", id: this._id, title: this.title, body: this.body, tag: this.tag, silent: this.silent });
      setTimeout(() => this._fire("show"), 0);
    }

    addEventListener(name, fn) {
      (this._listeners[name] ??= []).push(fn);
    }

    removeEventListener(name, fn) {
      const listeners = this._listeners[name] ?? [];
      const position = listeners.indexOf(fn);
      if (position >= 0) listeners.splice(position, 1);
    }

    dispatchEvent(ev) {
      this._fire(ev.type, ev);
      return true;
    }

    _fire(name, ev) {
      const event = ev ?? new Event(name);
      try {
        Object.defineProperty(event, "target", { value: this, configurable: true });
      } catch {}
      if (typeof this["on" + name] === "function") callSafely(this, this["on" + name], event);
      for (const listener of [...(this._listeners[name] ?? [])]) callSafely(this, listener, event);
    }

    close() {
      post({ type: "close", id: this._id });
      registry.delete(this._id);
      this._fire("close");
    }

    static get permission() {
      return permission;
    }

    static get maxActions() {
      return 0;
    }

    static requestPermission(callback) {
      let answer;
      try {
        answer = window.webkit.messageHandlers[permissionHandler].postMessage({}).then((reply) => {
          permission = String(reply);
          return permission;
        });
      } catch {
        answer = Promise.resolve(permission);
      }
      if (typeof callback === "function") answer.then(callback);
      return answer;
    }
  }

  window.__tarnNotificationClicked = (id) => {
    registry.get(String(id))?._fire("click");
  };
  window.__tarnNotificationClosed = (id) => {
    const notification = registry.get(String(id));
    if (!notification) return;
    registry.delete(String(id));
    notification._fire("close");
  };
  window.__tarnSetNotificationPermission = (p) => {
    permission = String(p);
  };

  try {
    Object.defineProperty(window, "Notification", { value: TarnNotification, configurable: true, writable: true });
  } catch {
    window.Notification = TarnNotification;
  }
}
