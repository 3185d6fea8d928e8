'use strict';

// What the three invented people have in their mail, calendars and drawers. A few things are written out, the long tail is
// made from the lists below, the same at every visit.
stage.data = (() => {
  const own = {
    ada: {
      mail: [
        ['Ines Haugen', 'Telescope time in November', 'We have two clear nights left on the small dome. Would the 14th suit you, or is that too close to the talk?'],
        ['Harbour Library', 'Your reserved book is here', 'The atlas of southern skies is waiting for you at the desk until Saturday.'],
        ['Tomas Reid', 'Slides for Thursday', 'I moved the spectra to the end and cut three pages. Have a look at the second graph, the axis is still wrong.'],
        ['Night Train Office', 'Booking 7H-2204 confirmed', 'Coach 12, bed 31, upper. Breakfast is served from six.'],
        ['Mira Okonkwo', 'Re: dome motor', 'The bearing came. Forty minutes of work and it turns without that noise.'],
      ],
      events: [[0, 9, 10, 'Stand-up'], [0, 13, 15, 'Data reduction'], [1, 10, 11, 'Ines, dome plans'], [2, 15, 16.5, 'Reading group'], [3, 11, 12, 'Talk: faint companions'], [4, 21, 24, 'Observing, small dome']],
      files: ['Spectra, November', 'Dome motor invoice', 'Talk: faint companions', 'Star chart, southern', 'Observing log'],
      notes: [['Packing', 'Red torch, gloves, thermos, spare batteries, the blue notebook'], ['Ask Tomas', 'Which comparison star did he use on the 3rd?'], ['Books', 'The long way of light; Small instruments']],
      tasks: ['Send slides to Tomas', 'Return the atlas', 'Order dome bearing grease', 'Write up night of the 3rd'],
    },
    bo: {
      mail: [
        ['Mill & Sons', 'Flour delivery moves to Tuesday', 'The road over the pass is closed on Monday, so we come one day later with the rye and the spelt.'],
        ['Karin Holm', 'Wedding cake, third try', 'Four tiers, lemon, and no fondant at all. My mother has been told.'],
        ['City Market', 'Stall plan for the winter market', 'You have number 18 again, next to the chestnut stand.'],
        ['Juno Abbot', 'Shift swap on Friday?', 'I could take your early one if you do my Saturday. Say yes before Wednesday.'],
        ['Oven Service', 'Inspection report', 'Both decks within two degrees. The door seal on the left will want replacing next year.'],
        ['Karin Holm', 'Re: Wedding cake, third try', 'She has not stopped talking about fondant. Stay strong.'],
        ['Neighbours of Mill Lane', 'Street party minutes', 'Decided: same date as last year, two long tables, no drums after ten.'],
      ],
      events: [[0, 4, 8, 'Early bake'], [1, 4, 8, 'Early bake'], [1, 14, 15, 'Flour delivery'], [2, 10, 11.5, 'Karin, cake tasting'], [3, 4, 8, 'Early bake'], [4, 16, 18, 'Market stall set-up'], [5, 8, 14, 'Winter market']],
      files: ['Price list, winter', 'Cake sketches', 'Sourdough ratios', 'Shift plan', 'Market stall photos', 'Oven inspection'],
      notes: [['Starter', 'Feed at six and at eighteen. If it smells of apples it is happy.'], ['Market', 'Cash box, wool hat, price cards, string'], ['Cake', 'Lemon curd two days before, not three']],
      tasks: ['Answer Juno about Friday', 'Order almonds', 'Print price cards', 'Call the chestnut stand', 'Feed the starter'],
    },
    chen: {
      mail: [
        ['Harbour Master', 'Low water on Sunday', 'The north pier will be out of use between nine and eleven. Please land at the steps.'],
        ['Ropewalk Supplies', 'Order 551 has left', 'Two mooring lines, one fender, one tin of green paint.'],
        ['Leila Nordin', 'Timetable proof', 'Page two has Sunday twice. Otherwise it can go to print.'],
      ],
      events: [[0, 7, 12, 'Morning crossings'], [1, 7, 12, 'Morning crossings'], [2, 13, 14, 'Crew meeting'], [3, 7, 12, 'Morning crossings'], [4, 15, 16, 'Leila, timetable'], [6, 9, 11, 'Low water, north pier closed']],
      files: ['Timetable, spring', 'Crew list', 'Engine hours', 'Tide tables'],
      notes: [['Green paint', 'One tin is enough for the rail, two if the deck box counts'], ['Crossing count', 'Saturday 412, Sunday 388']],
      tasks: ['Correct page two', 'Check the fender', 'Engine oil, port side'],
    },
  };

  const people = ['Nora Vale', 'Emil Strand', 'Aya Mori', 'Jonas Field', 'Priya Raman', 'Leo Marchetti', 'Selma Lind', 'Oskar Brandt', 'Wanjiru Njoroge', 'Pavel Dvorak', 'Freya Holt', 'Samir Haddad', 'Lucia Prado', 'Anton Berg', 'Mei Tanaka', 'Gwen Parry', 'Idris Bello', 'Hanna Kivi', 'Rafael Costa', 'Tess Quill'];
  const subjects = ['Notes from the meeting', 'Photos from the weekend', 'A question about the invoice', 'Key for the shed', 'Plan for next week', 'Lunch on Wednesday?', 'The draft, with comments', 'Bicycle repair', 'Small change to the plan', 'Receipt', 'Choir practice moved', 'Garden seeds', 'Parking on Mill Lane', 'Re: the old kettle', 'Reminder: dentist'];
  const sentences = ['Thank you for sending this so quickly.', 'I have read it twice and have one question only.', 'The numbers on the second page do not add up yet.', 'If it rains we meet inside.', 'Nothing urgent, it can wait until you are back.', 'Could you bring the folder with the blue spine?', 'We settled on the cheaper one in the end.', 'The others agree, so it is up to you.', 'Please tell me by Friday whether that works.', 'I left the key where it always is.'];
  const verbs = ['Call', 'Write to', 'Thank', 'Meet', 'Send the folder to'];
  const fileKinds = ['Document', 'Sheet', 'Picture'];
  const fileWords = ['Report', 'Sketch', 'Invoice', 'Letter', 'Plan', 'Photo', 'List', 'Minutes'];

  const pick = stage.seeded(stage.account);
  // Drawn like cards, so that little comes twice.
  const decks = new Map();
  function any(list) {
    if (!decks.get(list)?.length) decks.set(list, [...list]);
    const deck = decks.get(list);
    return deck.splice(pick(deck.length), 1)[0];
  }
  const mine = own[stage.account] ?? { mail: [], events: [], files: [], notes: [], tasks: [] };
  const paragraph = (count) => Array.from({ length: count }, () => any(sentences)).join(' ');
  const fill = (list, count, make) => [...list, ...Array.from({ length: Math.max(0, count - list.length) }, make)];

  return {
    paragraph,
    mail: fill(mine.mail, 60, () => [any(people), any(subjects), paragraph(2)])
      .map(([from, subject, text], place) => ({ id: 'c' + place, from, subject, text })),
    events: mine.events.map(([day, start, end, title]) => ({ day, start, end, title })),
    files: fill(mine.files, 34, (_, place) => any(fileWords) + ' ' + (place + 1))
      .map((name) => ({ name, kind: any(fileKinds), owner: pick(3) ? 'me' : any(people), kilobytes: 12 + pick(4000), days: 1 + pick(90) })),
    notes: fill(mine.notes, 24, () => [any(subjects), paragraph(1 + pick(3))]).map(([title, text]) => ({ title, text })),
    tasks: fill(mine.tasks, 26, () => any(verbs) + ' ' + any(people)),
    people: [...new Set([...mine.mail.map(([from]) => from), ...people])].sort()
      .map((name) => ({ name, email: name.toLowerCase().replace(/[^a-z]+/g, '.') + '@example.com', phone: '+1 555 01' + String(10 + pick(90)) })),
  };
})();
