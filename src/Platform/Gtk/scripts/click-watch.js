// Reports each click before the engine asks where its link may go: the engine's own question does not say from which
// frame it comes. Clicks that a script makes lead somewhere too. Runs in Tarn's script world, in every frame.
(send) => {
  let sequence = 0;
  const report = (event) => {
    if (event.type === "auxclick" && event.button !== 1) return;
    const link = event.composedPath().find((node) => node.localName === "a" || node.localName === "area");
    const own = ++sequence;
    const target = link ? String(link.getAttribute("target") ?? "").toLowerCase() : "";
    // As the standard has it: of another origin the attribute says nothing.
    const download = Boolean(link?.hasAttribute("download")) && (link.origin === location.origin || /^(blob|data):/.test(link.protocol));
    send("click", JSON.stringify({ sequence: own, sub: self !== top, parentIsTop: parent === top, download, target }));
    // The page may have prevented it: then no question follows, and this takes the click back.
    setTimeout(() => send("click-done", JSON.stringify({ sequence: own })), 0);
  };
  addEventListener("click", report, { capture: true });
  addEventListener("auxclick", report, { capture: true });
}
