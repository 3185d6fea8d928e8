// Makes window.webkit.messageHandlers for the page, as the engine would: a handler for each name, whose postMessage
// gives a promise. Runs before all other scripts in every frame. A function of an object that says for each name
// whether an answer is expected. What it uses is taken here, before the page can change it.
(names) => {
  const { apply } = Reflect;
  const { stringify, parse } = JSON;
  const { random } = Math;
  const { toString } = Number.prototype;
  const { addEventListener, dispatchEvent } = EventTarget.prototype;
  const NativeEvent = CustomEvent;
  const NativePromise = Promise;
  const detailOf = Object.getOwnPropertyDescriptor(CustomEvent.prototype, "detail").get;
  const stop = Event.prototype.stopImmediatePropagation;
  const listen = (name, listener, options) => apply(addEventListener, window, [name, listener, options]);

  const raise = (name, id, body) => {
    const text = stringify(body);
    if (text === undefined) throw new DOMException("The value cannot be posted.", "DataCloneError");
    const detail = name + "\n" + id + "\n" + text;
    const event = new NativeEvent("tarn-post", { detail, cancelable: true });
    // Whoever carries it takes it.
    if (apply(dispatchEvent, window, [event])) throw new Error("There is nobody to post to.");
  };

  const ask = (name, body) => {
    const id = apply(toString, random(), [36]);
    raise(name, id, body);
    return new NativePromise((resolve, reject) => {
      const answered = (event) => {
        const { result = null, error } = parse(apply(detailOf, event, []));
        if (error === undefined) resolve(result);
        else reject(new Error(error));
      };
      listen("tarn-answer-" + id, answered, { once: true });
    });
  };

  const tell = (name, body) => {
    raise(name, "", body);
    return new NativePromise((resolve) => resolve(undefined));
  };

  // The application's calls. Should this run twice in one window, one listener takes the event from the other.
  const called = (event) => {
    const [name, argument] = parse(apply(detailOf, event, []));
    apply(stop, event, []);
    if (window[name]) window[name](argument);
  };
  listen("tarn-call", called, true);

  if (window.webkit) return;
  const messageHandlers = {};
  for (const name of Object.keys(names)) {
    const post = names[name] ? ask : tell;
    messageHandlers[name] = { postMessage: (body = null) => post(name, body) };
  }
  Object.defineProperty(window, "webkit", { value: { messageHandlers }, configurable: true, writable: true });
}
