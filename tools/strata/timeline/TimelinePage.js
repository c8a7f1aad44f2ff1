// SPDX-License-Identifier: BSD-3-Clause
// Draws the model that the page holds, for the stretch of time in view. Texts come in as text nodes only.
'use strict';
(() => {
  const model = JSON.parse(document.getElementById('model').textContent);
  const total = model.duration_seconds > 0 ? model.duration_seconds : 1;
  const shortest = Math.min(total, 0.2);  // seconds in view, at least
  const left = 112, right = 16, narrowest = 2.5, leastSeen = 3, eventRows = 6;
  const styles = {'picture': 'picture', 'sound': 'sound', 'subtitle': 'subtitle', 'closed caption': 'caption',
                  'auxiliary data': 'data'};
  const lock = 'M2 5v-1.5a3 3 0 0 1 6 0V5h1v6H1V5zM3.5 5h3V3.5a1.5 1.5 0 0 0-3 0z';
  const warning = 'M5.5 0L11 10H0zM5 3.5v3.5h1V3.5zM5 8v1h1V8z';
  const steps = [0.05, 0.1, 0.25, 0.5, 1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 21600, 43200, 86400];
  const view = {from: 0, to: total};
  const isAlarm = item => item.state === 'missing' || item.state === 'broken';
  const isSilent = item => item.state === 'silence' || item.state === 'no sound';
  const endOf = item => item.start_seconds + item.duration_seconds;

  // ---- elements

  const make = (name, attributes = {}, ...children) => {
    const element = document.createElement(name);
    for (const key in attributes) element.setAttribute(key, attributes[key]);
    element.append(...children);
    return element;
  };
  const makeSvg = (parent, name, attributes = {}, text) => {
    const element = document.createElementNS('http://www.w3.org/2000/svg', name);
    for (const key in attributes) element.setAttribute(key, attributes[key]);
    if (text !== undefined) element.textContent = text;
    parent.append(element);
    return element;
  };

  // ---- time

  const rateOf = item => {
    const [numerator, denominator] = item.edit_rate.split(' ').map(Number);
    return numerator > 0 && denominator > 0 ? numerator / denominator : 24;
  };
  const count = (number, thing) => `${number} ${thing}${number === 1 ? '' : 's'}`;
  const two = number => String(number).padStart(2, '0');
  const timeCode = (units, rate) => {
    const base = Math.ceil(rate), seconds = Math.floor(units / base);
    return [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60, seconds % 60, units % base].map(two).join(':');
  };
  const isUniform = model.compositions.every(item => item.edit_rate === model.compositions[0].edit_rate);
  const compositionAt = seconds => {
    let low = 0, high = model.compositions.length;
    while (high - low > 1) {
      const middle = (low + high) >> 1;
      if (model.compositions[middle].start_seconds <= seconds) low = middle; else high = middle;
    }
    return low;
  };
  /** Where a time lies: time code, edit unit, composition and edit unit in there. */
  const placeAt = seconds => {
    const index = compositionAt(seconds), composition = model.compositions[index];
    if (!composition) return {code: timeCode(Math.floor(seconds * 24), 24), unit: 0};
    const rate = rateOf(composition);
    const within = Math.max(0, Math.floor((seconds - composition.start_seconds) * rate + 1e-6));
    const unit = composition.start + within;
    const whole = Math.floor(seconds + 1e-9), base = Math.ceil(rate);
    const code = isUniform ? timeCode(unit, rate) :
        timeCode(whole * base + Math.floor((seconds - whole) * base + 1e-6), rate);
    return {code, unit, within, index, composition};
  };
  /** Seconds between ticks, `least` at least: whole edit units where these are to be seen. */
  const stepFor = least => {
    const rate = model.compositions.length > 0 && isUniform ? rateOf(model.compositions[0]) : 0;
    const unit = rate ? [1, 2, 3, 6, 12].find(units => units < rate && units / rate >= least) : undefined;
    return unit ? unit / rate : steps.find(size => size >= least) || Math.ceil(least / 86400) * 86400;
  };
  const clock = (seconds, step) => {
    const whole = Math.floor(seconds + 1e-9), hours = Math.floor(whole / 3600);
    const text = (hours ? hours + ':' + two(Math.floor(whole / 60) % 60) : Math.floor(whole / 60)) + ':' + two(whole % 60);
    return step < 1 ? text + (seconds - whole).toFixed(2).slice(1) : text;
  };

  // ---- page

  const verdict = make('h1', {class: model.exit_code === 0 ? 'verdict' : 'alarmed'}, model.verdict);
  const reelCount = model.compositions.reduce((sum, composition) => sum + composition.reels.length, 0);
  const summary = make('div', {class: 'quiet'}, `${placeAt(model.duration_seconds).code} \u00b7 ${model.duration} ` +
      `edit units \u00b7 ${count(model.compositions.length, 'composition')}, ${count(reelCount, 'reel')}`);
  const readout = make('span', {class: 'readout'});
  const button = (text, title, act) => {
    const element = make('button', {type: 'button', title}, text);
    element.addEventListener('click', act);
    return element;
  };
  const tools = make('div', {class: 'tools'},
      button('+', 'Zoom in: key +', () => zoom(0.5)), button('\u2212', 'Zoom out: key -', () => zoom(2)),
      button('Whole show', 'Key 0', () => show(0, total)),
      button('\u25c0', 'Earlier: left arrow', () => pan(-0.25)), button('\u25b6', 'Later: right arrow', () => pan(0.25)),
      make('span', {class: 'quiet'}, 'Wheel: zoom. Drag: move. Click: keep details.'), readout);
  /** A link that does something on this page: by click, or by key where it has the focus. */
  const link = (text, act) => {
    const element = make('a', {href: '#page'}, text);
    element.addEventListener('click', event => { event.preventDefault(); act(); });
    return element;
  };
  const drawingBox = make('div'), overviewBox = make('div');
  const details = make('div', {class: 'details', hidden: ''});
  const tip = make('div', {class: 'tip', hidden: ''});
  document.getElementById('page').append(
      make('header', {}, verdict, make('div', {class: 'show-title'}, model.title)), summary, tools, drawingBox, overviewBox, details,
      legend(), findings(), compositions(), events(), tip);
  const drawing = makeSvg(drawingBox, 'svg', {class: 'drawing', role: 'img', 'aria-label': 'Timeline of ' + model.title});
  const overview = makeSvg(overviewBox, 'svg', {class: 'overview', height: 26});

  function legend() {
    const box = make('div', {class: 'legend'});
    const entry = (text, ...classes) => {
      const span = make('span');
      const picture = makeSvg(span, 'svg', {width: 24, height: 16});
      for (const name of classes) makeSvg(picture, 'rect', {class: name, x: 1, y: 1, width: 22, height: 14});
      span.append(text);
      box.append(span);
      return picture;
    };
    for (const kind of new Set(model.lanes.map(lane => lane.kind))) entry(kind, styles[kind]);
    entry('encrypted', 'picture', 'cipher');
    entry('silence, no sound', 'silence');
    entry('missing', 'hatched', 'missing');
    entry('broken', 'hatched', 'broken');
    const trimmed = entry('begins, ends within its file', 'picture');
    makeSvg(trimmed, 'path', {class: 'trim', d: 'M1 1h8l-8 8zM23 1h-8l8 8z'});
    if (model.compositions.some(item => item.stereoscopic)) box.append(make('span', {}, 'L, R: left and right eye'));
    return box;
  }

  function findings() {
    if (model.findings.length === 0) return '';
    const grave = {error: 0, missing: 1, warning: 2, profile: 3, note: 4};
    const list = make('ul', {class: 'findings'});
    for (const finding of [...model.findings].sort((a, b) => grave[a.severity] - grave[b.severity])) {
      const place = [finding.composition, finding.reel && 'reel ' + finding.reel, finding.asset_type].filter(Boolean);
      const facts = finding.expected ? ` Expected ${finding.expected}, found ${finding.found}.` :
          finding.found ? ` Found: ${finding.found}.` : '';
      const text = `${finding.severity}: ${place.length ? place.join(', ') + ': ' : ''}${finding.message}${facts}`;
      const composition = model.compositions[finding.composition_number - 1];
      const act = () => {
        showItem(finding.reel && composition.reels[finding.reel - 1] || composition);
        tell(details, toldOf(finding));
      };
      list.append(make('li', grave[finding.severity] > 1 ? {} : {class: 'problem'}, composition ? link(text, act) : text));
    }
    return make('section', {}, make('h2', {}, 'Findings'), list);
  }

  function table(title, heads, rows) {
    if (rows.length === 0) return '';
    // Columns of numbers stand in brackets; those of edit units and durations give way on narrow screens.
    const classOf = index => [typeof heads[index] === 'object' ? 'number' : '', /edit unit|duration/.test(heads[index]) ? 'wide' : '']
        .filter(Boolean).join(' ');
    const cell = (name, index, content) => make(name, classOf(index) ? {class: classOf(index)} : {}, content);
    const body = make('tbody');
    for (const row of rows)
      body.append(make('tr', {}, ...row.cells.map((text, index) =>
          cell('td', index, index === row.link ? link(String(text), row.act) : String(text)))));
    const head = make('thead', {}, make('tr', {}, ...heads.map((text, index) => cell('th', index, String(text)))));
    return make('section', {}, make('h2', {}, title), make('table', {class: 'list'}, head, body));
  }

  function compositions() {
    return table('Compositions', [[''], ['starts at'], ['edit unit'], 'title', ['duration'], ['edit units'], ''],
        model.compositions.map((item, index) => ({
          act: () => { showItem(item); tell(details, {heading: item.title, item}); }, link: 3,
          cells: [index + 1, placeAt(item.start_seconds).code, item.start, item.title,
                  timeCode(item.duration, rateOf(item)), item.duration,
                  isAlarm(item) ? item.state : item.description || '']})));
  }

  function events() {
    return table('Events', [['at'], ['edit unit'], 'label'],
        model.markers.filter(item => item.origin === 'show').map(item => ({
          link: 2, act: () => show(item.seconds - (view.to - view.from) / 2, item.seconds + (view.to - view.from) / 2),
          cells: [placeAt(item.seconds).code, item.position, item.label]})));
  }

  // ---- what is told of an item

  /** Of a finding: the track it is about, or else its composition. */
  const toldOf = finding => {
    for (const lane of model.lanes)
      for (const item of lane.tracks)
        if (item.composition === finding.composition_number && item.reel === finding.reel && item.asset_id === finding.asset_id)
          return {heading: headingOf(lane, item), item};
    const item = model.compositions[finding.composition_number - 1];
    return {heading: item.title, item};
  };
  const rowsOf = item => {
    const rows = [];
    const add = (name, value) => { if (value !== undefined && value !== '') rows.push([name, String(value)]); };
    const at = item.start_seconds !== undefined ? item.start_seconds : item.seconds;
    add('What it is', item.description);
    add('Starts at', `${placeAt(at).code}, edit unit ${item.start !== undefined ? item.start : item.position}`);
    if (item.duration !== undefined) add('Plays for', `${item.duration} edit units, ${clock(item.duration_seconds, 0.1)}`);
    add('Asset', item.asset_id);
    add('Identifier', item.id);
    add('File', item.file);
    add('Kind', item.kind);
    add('Scope', item.scope);
    if (item.edit_rate) add('Edit rate', item.edit_rate.replace(' ', '/'));
    add('Entry point', item.entry_point);
    add('Duration', item.asset_duration);
    add('Intrinsic duration', item.intrinsic_duration);
    add('Language', item.language);
    add('Coding', item.coding);
    if (item.stereoscopic) add('Eyes', 'left and right');
    add('Encrypted with key', item.key_id);
    if (item.state) add('State', item.state);
    return rows;
  };
  const tell = (box, told) => {
    const {heading, item} = told;
    box.replaceChildren(make('strong', {}, heading));
    for (const problem of item.problems || [])
      box.append(make('div', {class: isAlarm(item) ? 'problem' : ''}, problem));
    const body = make('table');
    for (const [name, value] of rowsOf(item))
      body.append(make('tr', {}, make('td', {}, name), make('td', {}, value)));
    box.append(body);
    if (item.intrinsic_duration > 0) {
      const share = units => Math.min(100, 100 * units / item.intrinsic_duration) + '%';
      const used = make('div');
      used.style.marginLeft = share(item.entry_point);
      used.style.width = share(item.duration);
      box.append(make('div', {class: 'used', title: 'The part of the file that plays'}, used));
    }
    box.hidden = false;
  };
  /** What is told of several drawn as one. */
  const toldOfMany = (drawn, what) => ({heading: `${what}, drawn as one: zoom in to see them`,
    item: {start: drawn.item.start, start_seconds: drawn.item.start_seconds, state: drawn.item.state}});
  const headingOf = (lane, item) => {
    const composition = model.compositions[item.composition - 1];
    return `${lane.name}: ${composition.title}, reel ${item.reel} of ${composition.reels.length}`;
  };

  // ---- drawing

  const context = document.createElement('canvas').getContext('2d');
  const fit = (text, size, weight, room) => {
    context.font = `${weight} ${size}px "Liberation Sans", "DejaVu Sans", Arial, Helvetica, sans-serif`;
    if (context.measureText(text).width <= room) return text;
    const letters = Array.from(text);
    let low = 0, high = letters.length;
    while (low < high) {
      const middle = (low + high + 1) >> 1;
      if (context.measureText(letters.slice(0, middle).join('') + '\u2026').width <= room) low = middle; else high = middle - 1;
    }
    return low === 0 ? '' : letters.slice(0, low).join('') + '\u2026';
  };

  let width = 0, y = 0, layers = {};
  const placeOf = seconds => left + (seconds - view.from) / (view.to - view.from) * (width - left - right);
  const timeOf = x => view.from + (x - left) / (width - left - right) * (view.to - view.from);

  /** The items in view, those narrow and alike drawn as one. Items come by their starts. */
  const visible = (items, classOf) => {
    const drawn = [], open = {};
    for (const item of items) {
      if (endOf(item) < view.from) continue;
      if (item.start_seconds > view.to) break;
      const from = Math.max(left, placeOf(item.start_seconds)), to = Math.min(width - right, placeOf(endOf(item)));
      const name = classOf(item), last = open[name];
      if (to - from < narrowest && last && from - last.to < narrowest) {
        last.to = Math.max(last.to, to);
        last.count += 1;
        continue;
      }
      const added = {from, to, item, count: 1};
      open[name] = to - from < narrowest ? added : undefined;
      drawn.push(added);
    }
    return drawn;
  };
  const label = (x, middle, room, text, classes, size = 12) => {
    const fitted = fit(text, size, classes.includes('strong') || classes.includes('plate') ? 'bold' : 'normal', room - 8);
    if (fitted) makeSvg(layers.labels, 'text', {class: classes, x: x + 4, y: middle + 4}, fitted);
  };
  const nameLane = (name, height) =>
      makeSvg(layers.labels, 'text', {class: 'lane', x: left - 10, y: y + height / 2 + 4, 'text-anchor': 'end'}, name);
  const box = (drawn, height, classes, told) => {
    const room = drawn.to - drawn.from;
    const size = {y, height, width: Math.max(room - (room > 4 ? 1.5 : 0), isAlarm(drawn.item) ? leastSeen : 1)};
    size.x = Math.min(drawn.from + 0.5, width - right - size.width);
    for (const name of classes) {
      const element = makeSvg(layers.boxes, 'rect', {class: name, ...size});
      element.told = told;
    }
    return size.width;
  };

  function drawTicks() {
    const least = 90 * (view.to - view.from) / (width - left - right);
    const step = stepFor(least);
    nameLane('Time', 20);
    context.font = '11px "Liberation Mono", "DejaVu Sans Mono", Consolas, monospace';
    let free = 0;
    for (let number = Math.ceil(view.from / step - 1e-9); number * step <= view.to + 1e-9; ++number) {
      const x = placeOf(number * step);
      makeSvg(layers.grid, 'line', {class: 'grid', x1: x, x2: x, y1: y + 22, y2: 10000});
      makeSvg(layers.grid, 'line', {class: 'tick', x1: x, x2: x, y1: y + 17, y2: y + 22});
      const text = step < 1 && isUniform ? placeAt(number * step + 1e-7).code : clock(number * step, step);
      const room = context.measureText(text).width;
      // At both ends labels stand inwards; those that would touch the one before are left out.
      const start = Math.min(Math.max(x - room / 2, left), width - right - room);
      if (start < free) continue;
      free = start + room + 6;
      makeSvg(layers.labels, 'text', {class: 'number over', x: start, y: y + 13}, text);
    }
    makeSvg(layers.grid, 'line', {class: 'axis', x1: left, x2: width - right, y1: y + 22, y2: y + 22});
    y += 26;
  }

  let rowsUsed = 1;  // never fewer than before, so that lanes stay where they are
  function drawEvents() {
    const rows = new Array(eventRows).fill(-Infinity), drawn = [];
    let hidden = 0;
    for (const item of model.markers) {
      if (item.origin !== 'show' || item.seconds < view.from || item.seconds > view.to) continue;
      const x = placeOf(item.seconds), text = fit(item.label, 11, 'bold', 260);
      const size = context.measureText(text).width + 12, flipped = x + size > width;
      drawn.push({item, x, text, size, flipped, begin: flipped ? x - size : x});
    }
    drawn.sort((a, b) => a.begin - b.begin);
    let lastLine = -1;
    for (const event of drawn) {
      const row = rows.findIndex(end => end + 4 <= event.begin);
      const top = y + 16 * (row < 0 ? eventRows : row);
      if (row >= 0 || event.x > lastLine + 1)
        makeSvg(layers.lines, 'line', {class: 'event', x1: event.x, x2: event.x, y1: top, y2: 10000});
      lastLine = event.x;
      if (row < 0) { hidden += 1; continue; }
      rows[row] = event.begin + event.size;
      rowsUsed = Math.max(rowsUsed, row + 1);
      const told = {heading: 'Event: ' + event.item.label, item: event.item};
      makeSvg(layers.boxes, 'rect', {x: event.begin, y: top, width: event.size, height: 14, 'fill-opacity': 0}).told = told;
      makeSvg(layers.labels, 'path', {class: 'flag', d: event.flipped ? 'M0 0L-5 3.5L0 7z' : 'M0 0L5 3.5L0 7z',
        transform: `translate(${event.x} ${top})`});
      makeSvg(layers.labels, 'text', {class: 'small strong', x: event.x + (event.flipped ? -8 : 8), y: top + 10,
        'text-anchor': event.flipped ? 'end' : 'start'}, event.text);
    }
    if (model.markers.some(item => item.origin === 'show'))
      makeSvg(layers.labels, 'text', {class: 'lane', x: left - 10, y: y + 12, 'text-anchor': 'end'}, 'Events');
    if (hidden) makeSvg(layers.labels, 'text', {class: 'faint', x: left - 10, y: y + 27, 'text-anchor': 'end'}, `and ${hidden} more`);
    if (hidden) rowsUsed = Math.max(rowsUsed, 2);
    y += 16 * rowsUsed + 4;
  }

  function drawShows() {
    const deepest = Math.min(4, Math.max(0, ...model.shows.map(item => item.depth)));
    for (let depth = 1; depth <= deepest; ++depth) {
      if (depth === 1) nameLane('Playlists', 18);
      for (const drawn of visible(model.shows.filter(item => item.depth === depth), () => '')) {
        const room = box(drawn, 18, ['show'], {heading: 'Show playlist: ' + drawn.item.title, item: drawn.item});
        label(drawn.from, y + 9, room, drawn.count > 1 ? `${drawn.count} show playlists` : drawn.item.title, 'small', 11);
      }
      y += 23;
    }
  }

  function drawCompositions() {
    nameLane('Compositions', 38);
    let lastEdge = -10;
    for (const drawn of visible(model.compositions, item => item.state)) {
      const item = drawn.item, alarm = isAlarm(item), number = model.compositions.indexOf(item) + 1;
      const name = `${number}  ${item.title}`;
      const told = drawn.count > 1 ? toldOfMany(drawn, `${drawn.count} compositions`) : {heading: 'Composition ' + name, item};
      const room = box(drawn, 38, alarm ? ['hatched', item.state] : ['composition'], told);
      if (drawn.count > 1) {
        label(drawn.from, y + 19, room, `${drawn.count} compositions`, alarm ? 'plate' : 'small', 11);
      } else {
        label(drawn.from, y + 10, room, name, alarm ? 'plate' : 'strong', alarm ? 11 : 12);
        label(drawn.from, y + 26, room, alarm ? item.state : item.description || '', alarm ? 'plate' : 'small', 11);
      }
      const x = placeOf(item.start_seconds);
      if (x < left || x < lastEdge + 6) continue;
      makeSvg(layers.grid, 'line', {class: 'edge', x1: x, x2: x, y1: y - 4, y2: 10000});
      lastEdge = x;
    }
    y += 43;
  }

  const allReels = model.compositions.flatMap((composition, index) => composition.reels.map((reel, number) =>
      ({...reel, heading: `Reel ${number + 1} of ${composition.reels.length}: ${composition.title}`, number: number + 1})));

  function drawReels() {
    nameLane('Reels', 18);
    for (const drawn of visible(allReels, () => '')) {
      const room = box(drawn, 18, ['reel'], drawn.count > 1 ?
          toldOfMany(drawn, `${drawn.count} reels`) : {heading: drawn.item.heading, item: drawn.item});
      label(drawn.from, y + 9, room, drawn.count > 1 ? `${drawn.count} reels` : String(drawn.item.number), 'small', 11);
    }
    y += 23;
  }

  function drawOwnMarkers() {
    const own = model.markers.filter(item => item.origin === 'composition');
    if (own.length === 0) return;
    nameLane('Markers', 16);
    const seen = own.filter(item => item.seconds >= view.from && item.seconds <= view.to);
    let last = -10;
    seen.forEach((item, index) => {
      const x = placeOf(item.seconds), next = index + 1 < seen.length ? placeOf(seen[index + 1].seconds) : width;
      if (x >= last + 1) {
        const mark = makeSvg(layers.boxes, 'path', {class: 'flag own', d: 'M0 0L4 4L0 8L-4 4z', transform: `translate(${x} ${y + 4})`});
        mark.told = {heading: 'Marker of the composition: ' + item.label, item};
        last = x;
      }
      label(x + 3, y + 8, next - x - 8, item.label, 'small', 11);
    });
    y += 21;
  }

  function drawLane(lane) {
    const height = lane.kind === 'picture' ? 38 : lane.kind === 'sound' ? 28 : 24;
    nameLane(lane.name, height);
    const items = visible(lane.tracks, item => item.state + (item.key_id ? ' encrypted' : ''));
    for (const alarmed of [false, true])
      for (const drawn of items)
        if (isAlarm(drawn.item) === alarmed) drawTrack(lane, drawn, height);
    y += height + 5;
  }

  function drawTrack(lane, drawn, height) {
    const item = drawn.item, alarm = isAlarm(item), many = `${drawn.count} reels`;
    const classes = alarm ? ['hatched', item.state] : isSilent(item) ? ['silence'] : [styles[lane.kind]];
    if (item.key_id && !alarm) classes.push('cipher');
    const room = box(drawn, height, classes, drawn.count > 1 ? toldOfMany(drawn, `${lane.name}: ${many}`) : {heading: headingOf(lane, item), item});
    if (drawn.count > 1)
      return label(drawn.from, y + height / 2, room, alarm ? `${many}: ${item.state}` : many, alarm ? 'plate' : 'small', 11);
    let x = drawn.from;
    const path = (d, name, px, py) => makeSvg(layers.labels, 'path', {class: name, d, transform: `translate(${px} ${py})`, 'pointer-events': 'none'});
    const isHead = placeOf(item.start_seconds) >= left, isTail = placeOf(endOf(item)) <= width - right;
    if (item.entry_point > 0) {
      if (isHead && room > 20) path('M0 0H9L0 9z', 'trim', drawn.from, y);
      x += 8;
    }
    if (item.intrinsic_duration > item.entry_point + item.duration && isTail && room > 20)
      path('M0 0H-9L0 9z', 'trim', drawn.from + room, y);
    const rest = () => drawn.from + room - x;
    if (item.stereoscopic && !alarm && room > 14) {
      makeSvg(layers.labels, 'line', {class: 'half', x1: drawn.from, x2: drawn.from + room, y1: y + height / 2, y2: y + height / 2});
      makeSvg(layers.labels, 'text', {class: 'small strong', x: x + 4, y: y + height / 2 - 5}, 'L');
      makeSvg(layers.labels, 'text', {class: 'small strong', x: x + 4, y: y + height - 5}, 'R');
      x += 14;
    }
    if (item.key_id && rest() > 16) { path(lock, 'lock', x + 3, y + height / 2 - 6); x += 14; }
    if (item.state === 'unusual' && rest() > 18) { path(warning, 'warning', x + 3, y + height / 2 - 5); x += 15; }
    const word = item.coding || item.language || '';
    const from = item.entry_point > 0 ? 'from ' + item.entry_point : '';
    const text = alarm || isSilent(item) ? item.state : [word, from].filter(Boolean).join(', ');
    label(x, y + height / 2, rest(), text, alarm ? 'plate' : isSilent(item) ? 'faint' : item.key_id ? 'small over' : 'small', 11);
  }

  function drawOverview() {
    overview.replaceChildren();
    overview.setAttribute('width', width);
    const whole = width - left - right;
    const at = seconds => left + seconds / total * whole;
    const name = makeSvg(overview, 'text', {class: 'faint', x: left - 10, y: 17, 'text-anchor': 'end'}, 'Whole show');
    let last = {x: -10};
    for (const item of model.compositions) {
      const x = at(item.start_seconds), size = Math.max(item.duration_seconds / total * whole - 0.5, isAlarm(item) ? leastSeen : 0.5);
      if (!isAlarm(item) && x + size < last.x + 1) continue;
      makeSvg(overview, 'rect', {class: isAlarm(item) ? item.state : 'composition', x, y: 4, width: size, height: 18});
      last = {x: x + size};
    }
    for (const lane of model.lanes)
      for (const item of lane.tracks)
        if (isAlarm(item))
          makeSvg(overview, 'rect', {class: item.state, x: at(item.start_seconds), y: 4,
            width: Math.max(leastSeen, item.duration_seconds / total * whole), height: 18});
    makeSvg(overview, 'rect', {class: 'window', x: at(view.from), y: 1, height: 24,
      width: Math.max(2, at(view.to) - at(view.from))});
    return name;
  }

  function addPatterns() {
    const defs = makeSvg(drawing, 'defs');
    const pattern = (id, size, d, name) => makeSvg(makeSvg(defs, 'pattern',
        {id, patternUnits: 'userSpaceOnUse', width: size, height: size}), 'path', {class: name, d});
    pattern('missing', 10, 'M-2 2L2-2M0 10L10 0M8 12L12 8', 'hatch');
    pattern('broken', 10, 'M-2 2L2-2M0 10L10 0M8 12L12 8M-2 8L2 12M0 0L10 10M8-2L12 2', 'hatch');
    pattern('cipher', 6, 'M1 1h1.5v1.5H1zM4 4h1.5v1.5H4z', 'dot');
  }

  let cursor;
  function draw() {
    width = Math.max(240, drawingBox.clientWidth);
    drawing.replaceChildren();
    addPatterns();
    for (const name of ['grid', 'boxes', 'lines', 'labels']) layers[name] = makeSvg(drawing, 'g');
    y = 4;
    drawEvents();
    drawTicks();
    drawShows();
    drawCompositions();
    drawReels();
    drawOwnMarkers();
    model.lanes.forEach(drawLane);
    makeSvg(layers.grid, 'line', {class: 'axis', x1: left, x2: width - right, y1: y, y2: y});
    cursor = makeSvg(drawing, 'line', {class: 'cursor', y1: 0, y2: y, visibility: 'hidden'});
    drawing.setAttribute('width', width);
    drawing.setAttribute('height', y + 1);
    drawOverview();
  }

  // ---- moving

  let isAsked = false;
  function show(from, to) {
    const length = Math.min(total, Math.max(shortest, to - from));
    view.from = Math.min(Math.max(0, (from + to - length) / 2), total - length);
    view.to = view.from + length;
    if (isAsked) return;
    isAsked = true;
    requestAnimationFrame(() => { isAsked = false; draw(); });
  }
  function zoom(factor, centre = (view.from + view.to) / 2) {
    const length = Math.min(total, Math.max(shortest, (view.to - view.from) * factor));
    const share = (centre - view.from) / (view.to - view.from);
    show(centre - share * length, centre + (1 - share) * length);
  }
  const pan = share => show(view.from + share * (view.to - view.from), view.to + share * (view.to - view.from));
  function showItem(item) {
    const edge = Math.max(item.duration_seconds * 0.1, shortest / 2);
    show(item.start_seconds - edge, endOf(item) + edge);
    drawing.scrollIntoView({block: 'nearest'});
  }
  const placeInside = event => event.clientX - drawing.getBoundingClientRect().left;

  drawing.addEventListener('wheel', event => {
    event.preventDefault();
    if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY))
      pan((event.deltaX || event.deltaY) / 1000);
    else
      zoom(Math.exp(event.deltaY * 0.0016), Math.min(view.to, Math.max(view.from, timeOf(placeInside(event)))));
  }, {passive: false});

  let drag = null;
  drawing.addEventListener('pointerdown', event => {
    if (event.button === 0) drag = {x: event.clientX, from: view.from, to: view.to, moved: false, told: event.target.told};
  });
  addEventListener('pointermove', event => {
    if (!drag) return;
    const moved = event.clientX - drag.x;
    if (Math.abs(moved) > 3) drag.moved = true;
    if (!drag.moved) return;
    drawing.classList.add('dragged');
    tip.hidden = true;
    const seconds = moved / (width - left - right) * (drag.to - drag.from);
    show(drag.from - seconds, drag.to - seconds);
  });
  addEventListener('pointerup', () => {
    if (drag && !drag.moved) {
      details.hidden = true;
      if (drag.told) tell(details, drag.told);
    }
    drag = null;
    drawing.classList.remove('dragged');
  });

  drawing.addEventListener('pointermove', event => {
    const x = placeInside(event), seconds = timeOf(x), isInside = seconds >= view.from && seconds <= view.to;
    cursor.setAttribute('visibility', isInside ? 'visible' : 'hidden');
    cursor.setAttribute('x1', x);
    cursor.setAttribute('x2', x);
    const place = placeAt(Math.min(Math.max(seconds, 0), total));
    readout.textContent = isInside ? `${place.code}  edit unit ${place.unit}` +
        (place.composition ? `  (${place.within} of composition ${place.index + 1})` : '') : '';
    const told = event.target.told;
    if (!told || drag && drag.moved) { tip.hidden = true; return; }
    tell(tip, told);
    tip.style.left = Math.max(0, Math.min(event.clientX + 14, innerWidth - tip.offsetWidth - 8)) + 'px';
    const below = event.clientY + 18;
    tip.style.top = Math.max(0, below + tip.offsetHeight > innerHeight ? event.clientY - tip.offsetHeight - 12 : below) + 'px';
  });
  drawing.addEventListener('pointerleave', () => {
    tip.hidden = true;
    readout.textContent = '';
    cursor.setAttribute('visibility', 'hidden');
  });

  const centreOn = event => {
    const share = (event.clientX - overview.getBoundingClientRect().left - left) / (width - left - right);
    const half = (view.to - view.from) / 2;
    show(share * total - half, share * total + half);
  };
  overview.addEventListener('pointerdown', event => { overview.setPointerCapture(event.pointerId); centreOn(event); });
  overview.addEventListener('pointermove', event => { if (event.buttons & 1) centreOn(event); });

  addEventListener('keydown', event => {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    const act = {'+': () => zoom(0.5), '=': () => zoom(0.5), '-': () => zoom(2), '0': () => show(0, total),
                 'ArrowLeft': () => pan(-0.25), 'ArrowRight': () => pan(0.25), 'Escape': () => { details.hidden = true; }}[event.key];
    if (!act) return;
    event.preventDefault();
    act();
  });
  addEventListener('resize', () => show(view.from, view.to));
  draw();
})();
