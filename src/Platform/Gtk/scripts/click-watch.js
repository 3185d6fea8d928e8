// Reports each activation of a link by the user, before the engine asks where it may go: the engine's own question does
// not say from which frame it comes. Runs in Tarn's script world, in every frame.
(send) => {
  let sequence = 0;
  const report = (event) => {
    if (!event.isTrusted || (event.type === "auxclick" && event.button !== 1)) return;
    const link = event.composedPath().find((node) => node.localName === "a" || node.localName === "area");
    const own = ++sequence;
    const target = link ? String(link.getAttribute("target") ?? "").toLowerCase() : "";
    send("click", JSON.stringify({ sequence: own, sub: self !== top, parentIsTop: parent === top, target }));
    // The page may have prevented it: then no question follows, and this takes the click back.
    setTimeout(() => send("click-done", JSON.stringify({ sequence: own })), 0);
  };
  addEventListener("click", report, { capture: true });
  addEventListener("auxclick", report, { capture: true });
}
