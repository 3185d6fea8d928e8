// Leads the page's other ways to notify and to ask about it to the same place: notifications of its service worker's
// registration, and the permission query. Runs before notifications.js, at document start in every frame. A function of
// the name of the handler that tells the permission.
(stateHandler) => {
  // That script marks the window; this one is done with it then.
  if (window.__tarnNotificationsInstalled) return;

  const { apply } = Reflect;
  const permission = async () => {
    try {
      window.__tarnSetNotificationPermission(await window.webkit.messageHandlers[stateHandler].postMessage({}));
    } catch {}
    return window.Notification.permission;
  };
  const define = (owner, name, value) =>
    Object.defineProperty(owner.prototype, name, { value, configurable: true, enumerable: true, writable: true });

  // The application tells main frames by itself. Later: a document that is just beginning cannot send yet.
  if (window !== window.top) setTimeout(permission, 0);

  if (window.ServiceWorkerRegistration) {
    const shown = new Set();
    define(ServiceWorkerRegistration, "showNotification", async function showNotification(title, options) {
      if ((await permission()) !== "granted")
        throw new TypeError("Registration does not have permission to show notifications");
      const notification = new window.Notification(title, options);
      for (const earlier of shown) {
        if (notification.tag && earlier.registration === this && earlier.notification.tag === notification.tag)
          shown.delete(earlier);
      }
      const entry = { registration: this, notification };
      shown.add(entry);
      notification.addEventListener("close", () => shown.delete(entry));
    });
    define(ServiceWorkerRegistration, "getNotifications", async function getNotifications(filter) {
      return [...shown]
        .filter(({ registration, notification }) => registration === this && (!filter?.tag || notification.tag === String(filter.tag)))
        .map(({ notification }) => notification);
    });
  }

  if (window.Permissions) {
    const engineQuery = Permissions.prototype.query;
    define(Permissions, "query", async function query(descriptor) {
      const status = await apply(engineQuery, this, [descriptor]);
      if (descriptor?.name !== "notifications") return status;
      await permission();
      const get = () => (window.Notification.permission === "default" ? "prompt" : window.Notification.permission);
      Object.defineProperty(status, "state", { get, configurable: true });
      return status;
    });
  }
}
