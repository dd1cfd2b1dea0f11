"""Reads the gallery through the AT-SPI bus, as a screen reader does, and
checks what the library's owner-drawn widgets tell it: the tabs of every
page, the selection Ctrl+Tab moves, the overflow menu, a tab's tooltip, a
splitter's sash and the elements. Pages are switched by the gallery's own tabs' "activate"
action. Run inside a session bus of its own (see run_gallery_check):

    check_gallery.py AT_SPI_BUS_LAUNCHER GALLERY

Prints one line per check; a failed check shows what was expected and what
was found, and the run ends with the tree it saw. Every wait is a bounded
poll."""

import os
import re
import subprocess
import sys
import tempfile
import time

WAIT = 10.0   # seconds any awaited change may take
TICK = 0.02   # between two looks


class Failed(Exception):
    pass


def poll(probe, timeout=WAIT, pump=lambda: None):
    """The first true result of probe() within timeout seconds, else None."""
    end = time.monotonic() + timeout
    while True:
        pump()
        found = probe()
        if found or time.monotonic() >= end:
            return found
        time.sleep(TICK)


# --- the accessibility bus ---------------------------------------------------

def start_bus(launcher):
    """Starts the accessibility bus launcher on the session bus and returns it
    once it owns org.a11y.Bus and its bus answers."""
    from gi.repository import Gio, GLib
    log = tempfile.TemporaryFile()
    process = subprocess.Popen([launcher, '--launch-immediately'], stdout=log, stderr=log)

    def fail(why):
        process.kill()
        process.wait()
        log.seek(0)
        said = log.read().decode(errors='replace').strip()
        raise Failed('cannot start the accessibility bus: ' + why + (': ' + said if said else ''))

    session = Gio.bus_get_sync(Gio.BusType.SESSION, None)

    def dbus(method, name):
        return session.call_sync('org.freedesktop.DBus', '/org/freedesktop/DBus',
                                 'org.freedesktop.DBus', method, GLib.Variant('(s)', (name,)),
                                 None, Gio.DBusCallFlags.NONE, -1, None).unpack()[0]

    # Ours, not one the session bus would start on demand.
    def owned():
        return process.poll() is not None or (
            dbus('NameHasOwner', 'org.a11y.Bus') and
            dbus('GetConnectionUnixProcessID', 'org.a11y.Bus') == process.pid)
    poll(owned)
    if process.poll() is not None:
        fail(f'{launcher} exited with status {process.returncode}')
    if not owned():
        fail(f'{launcher} did not take the name org.a11y.Bus within {WAIT:g} s')
    try:
        address = session.call_sync('org.a11y.Bus', '/org/a11y/bus', 'org.a11y.Bus', 'GetAddress',
                                    None, None, Gio.DBusCallFlags.NONE, -1, None).unpack()[0]
        Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None).close_sync(None)
    except GLib.Error as error:
        fail(f'its bus does not answer ({error.message})')
    return process


# --- reading the tree ----------------------------------------------------------

pyatspi = None  # it connects to the bus when imported: after start_bus()

NOTED_STATES = ('focusable', 'focused', 'selectable', 'selected', 'expandable', 'expanded',
                'collapsed', 'checked')


def children(acc):
    try:
        return [child for child in acc if child is not None]
    except Exception:  # an object that went while it was read
        return []


def state_names(acc):
    try:
        return {state.value_nick for state in acc.getState().getStates()}
    except Exception:
        return {'defunct'}


def action_names(acc):
    try:
        action = acc.queryAction()
    except NotImplementedError:
        return []
    return [action.getName(i) for i in range(action.nActions)]


def value_of(acc):
    try:
        value = acc.queryValue()
    except NotImplementedError:
        return None
    return value.currentValue, value.minimumValue, value.maximumValue


def showing(acc):
    return 'showing' in state_names(acc)


def quoted(text):
    return text.replace('\\', '\\\\').replace('"', '\\"').replace('\n', '\\n')


def describe(acc, parent_showing=True):
    """One line, as the tour's .a11y.txt files have them."""
    try:
        text = f'{acc.getRoleName()} "{quoted(acc.name)}"'
    except Exception:
        return '(defunct)'
    states = state_names(acc)
    noted = [name for name in NOTED_STATES if name in states]
    if parent_showing and 'showing' not in states:
        noted.append('not showing')
    if noted:
        text += ' [' + ', '.join(noted) + ']'
    actions = action_names(acc)
    if actions:
        text += ' actions=(' + ', '.join(actions) + ')'
    value = value_of(acc)
    if value is not None:
        text += ' value=%g (%g..%g)' % value
    if acc.description:
        text += f' description="{quoted(acc.description)}"'
    if getattr(acc, 'accessibleId', ''):
        text += f' id="{acc.accessibleId}"'
    return text


def tree_text(acc, depth=0, parent_showing=True, only_showing=True):
    lines = ['  ' * depth + describe(acc, parent_showing)]
    here = showing(acc)
    if here or not only_showing:
        for child in children(acc):
            lines += tree_text(child, depth + 1, here, only_showing)
    return lines


def descendants(acc, role=None, name=None, visible=True):
    """Every descendant in tree order, by role and name; inside shown parts only."""
    found = []
    for child in children(acc):
        if visible and not showing(child):
            continue
        if (role is None or child.getRoleName() == role) and (name is None or child.name == name):
            found.append(child)
        found += descendants(child, role, name, visible)
    return found


def do_action(acc, name=None):
    """Does the action called `name` (the first one when None); Failed if none."""
    actions = action_names(acc)
    if not actions or (name is not None and name not in actions):
        raise Failed(f'no action "{name or "any"}" on: {describe(acc)}')
    acc.queryAction().doAction(actions.index(name) if name else 0)


# --- the checks --------------------------------------------------------------------

BASE_TAB_STATES = ('selectable', 'focusable', 'enabled', 'sensitive')


def tab_line(tab, closable=None):
    states = state_names(tab)
    text = f'page tab "{tab.name}"' + (' [selected]' if 'selected' in states else '')
    missing = [s for s in BASE_TAB_STATES if s not in states]
    actions = action_names(tab)
    missing += [f'action {a}' for a in ('activate',) + (('close',) if closable else ())
                if a not in actions]
    if missing:
        text += ' (missing: ' + ', '.join(missing) + ')'
    return text if tab.getRoleName() == 'page tab' else f'{tab.getRoleName()}: {text}'


def strip_lines(strip):
    """A tab list as lines: the list, then its tabs. A list whose tabs carry a
    close action is held to it for all of them."""
    tabs = descendants(strip, 'page tab', visible=False)
    closable = any('close' in action_names(tab) for tab in tabs)
    return [f'{strip.getRoleName()} ({len(tabs)} tabs)'] + \
        ['  ' + tab_line(tab, closable) for tab in tabs]


def expected_strip(names, selected=None):
    return [f'page tab list ({len(names)} tabs)'] + \
        [f'  page tab "{name}"' + (' [selected]' if name == selected else '') for name in names]


class Checker:
    def __init__(self, gallery):
        self.gallery = gallery
        self.failures = 0
        self.events = []
        self.titles = [line.split('\t')[1] for line in subprocess.run(
            [gallery, '--list-pages'], check=True, capture_output=True,
            text=True).stdout.splitlines()]

    def pump(self):
        from gi.repository import GLib
        context = GLib.MainContext.default()
        while context.iteration(False):
            pass

    def wait(self, probe, timeout=WAIT):
        return poll(probe, timeout, self.pump)

    def check(self, what, body):
        try:
            if self.process.poll() is not None:
                raise Failed(f'the gallery has ended (status {self.process.returncode})')
            body()
            print(f'a11y: {what}: ok', flush=True)
            return True
        except Exception as failure:  # a D-Bus error too: an object gone, the gallery hung
            self.failures += 1
            text = failure if isinstance(failure, Failed) else f'{type(failure).__name__}: {failure}'
            print(f'a11y: {what}: FAILED: {text}', flush=True)
            return False

    def expect_lines(self, what, expected, found_now):
        """Waits until found_now() gives the expected lines; Failed shows both."""
        def lines():
            try:
                return found_now()
            except Exception as error:  # what was looked for is not there (yet)
                return [f'({error})']
        if not self.wait(lambda: lines() == expected):
            raise Failed(f'{what}\n  expected:\n    ' + '\n    '.join(expected) +
                         '\n  found:\n    ' + '\n    '.join(lines() or ['(nothing)']))

    # --- the application ---

    def start(self, page):
        env = dict(os.environ)
        env.pop('NO_AT_BRIDGE', None)
        self.process = subprocess.Popen([self.gallery, '--page', page], env=env)
        self.registry = pyatspi.Registry
        self.registry.registerEventListener(self.on_event, 'object:state-changed:selected')
        self.app = self.wait(self.find_app, 20)
        if self.app is None:
            seen = [a.name for a in children(self.registry.getDesktop(0))]
            raise Failed('the gallery did not appear on the accessibility bus within 20 s '
                         f'(exit status {self.process.poll()}; applications seen: {seen})')

    def find_app(self):
        if self.process.poll() is not None:
            return None
        for app in children(self.registry.getDesktop(0)):
            try:
                if app.name == 'gallery' and app.get_process_id() == self.process.pid:
                    return app
            except Exception:
                pass
        return None

    def stop(self):
        """Ends the gallery; False when it had ended by itself (a crash, or
        a sanitizer's report)."""
        if self.process.poll() is not None:
            return False
        self.process.terminate()
        try:
            self.process.wait(WAIT)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        return True

    def on_event(self, event):
        try:
            self.events.append((event.source.name, event.detail1))
        except Exception:
            pass

    def library_frame(self):
        """The wx top level the library made inside the host's window: the
        frame that is not the host's own."""
        frames = [f for f in children(self.app) if f.getRoleName() == 'frame' and f.name != 'orvix1 gallery']
        return frames[0] if frames else self.app

    def strips(self):
        return [strip_lines(s) for s in descendants(self.library_frame(), 'page tab list')]

    def gallery_strip(self):
        for strip in descendants(self.library_frame(), 'page tab list'):
            if [t.name for t in descendants(strip, 'page tab', visible=False)] == self.titles:
                return strip
        raise Failed('no page tab list of the gallery\'s pages (' + ', '.join(self.titles) + ')')

    def strip_holding(self, name):
        for strip in descendants(self.library_frame(), 'page tab list'):
            if descendants(strip, 'page tab', name, visible=False):
                return strip
        raise Failed(f'no page tab list with a tab "{name}"')

    # --- checks ---

    def check_strips(self, page, *page_strips):
        expected = [expected_strip(self.titles, page)] + [expected_strip(*s) for s in page_strips]
        flat = lambda strips: [line for strip in strips for line in strip]
        self.check(f'{page}: every tab by role, name and selected state',
                   lambda: self.expect_lines('the page tab lists', flat(expected),
                                             lambda: flat(self.strips())))

    def select_page(self, title):
        """False when the page could not be selected."""
        def body():
            strip = self.gallery_strip()
            tab = descendants(strip, 'page tab', title, visible=False)[0]
            do_action(tab, 'activate')
            if not self.wait(lambda: 'selected' in state_names(tab)):
                raise Failed(f'not selected after "activate": {describe(tab)}')
        return self.check(f'{title}: selected by its tab\'s "activate"', body)

    def push_button(self, name):
        button = self.wait(lambda: descendants(self.library_frame(), 'push button', name))
        if not button:
            raise Failed(f'no push button "{name}"')
        return button[0]

    def label(self, prefix):
        return self.wait(lambda: [l for l in descendants(self.library_frame(), 'label')
                                  if l.name.startswith(prefix)])

    def tabs_page(self):
        documents = ['Report.txt *', 'Notes.md', 'Budget.ods *', 'Plan.odt', 'Build']
        tools = ['Output', 'Problems']

        def native_controls():
            for name in ('New document', 'Mark modified'):
                if 'click' not in action_names(self.push_button(name)):
                    raise Failed(f'"{name}" cannot be clicked')
        self.check('Tabs: the native buttons beside the strips', native_controls)
        self.check_strips('Tabs', (documents, 'Report.txt *'), (tools,))

        def ctrl_tab():
            button = self.push_button('New document')
            # Without a window manager the key goes where the pointer is.
            x, y, width, height = button.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            self.registry.generateMouseEvent(x + width // 2, y + height // 2, 'abs')
            button.queryComponent().grabFocus()
            self.events.clear()
            self.registry.generateKeyboardEvent(4, None, pyatspi.KEY_LOCKMODIFIERS)  # Control
            self.registry.generateKeyboardEvent(0xff09, None, pyatspi.KEY_SYM)  # Tab
            self.registry.generateKeyboardEvent(4, None, pyatspi.KEY_UNLOCKMODIFIERS)
            if not self.label('Notes.md: '):
                raise Failed('the page does not show Notes.md; its labels: ' + ', '.join(
                    f'"{l.name}"' for l in descendants(self.library_frame(), 'label')))
        self.check('Tabs: Ctrl+Tab moves to the next document', ctrl_tab)

        def selection_told():
            self.expect_lines('the documents after Ctrl+Tab', expected_strip(documents, 'Notes.md'),
                              lambda: strip_lines(self.strip_holding('Notes.md')))
            if not self.wait(lambda: ('Notes.md', 1) in self.events):
                raise Failed(f'no state-changed:selected event from "Notes.md"; events: {self.events}')
        self.check('Tabs: the tabs tell the new selection', selection_told)

        def overflow():
            button = self.push_button('New document')
            more = []
            for number in range(1, 16):
                do_action(button, 'click')
                if not self.label(f'Untitled {number}: '):
                    raise Failed(f'"Untitled {number}" did not open')
                # The pane's own button, beside its strips.
                more = [b for b in children(self.strip_holding('Plan.odt').parent)
                        if b.getRoleName() == 'push button' and showing(b) and
                        re.fullmatch(r'More tabs \(\d+\)', b.name)]
                if more:
                    break
            if not more:
                raise Failed('no push button "More tabs (N)" after 15 new documents; buttons: ' +
                             ', '.join(f'"{b.name}"' for b in descendants(self.library_frame(), 'push button')))
            pane = self.strip_holding('Plan.odt').parent

            # The menu lists what does not fit, of both strips.
            def hidden_tabs():
                return [t.name for t in descendants(pane, 'page tab', visible=False) if not showing(t)]
            if not self.wait(lambda: len(hidden_tabs()) == int(re.search(r'\d+', more[0].name).group())):
                raise Failed(f'"{more[0].name}", but these tabs are not showing: {hidden_tabs()}\n' +
                             '\n'.join(tree_text(pane, only_showing=False)))
            hidden = hidden_tabs()
            do_action(more[0])
            menus = self.wait(lambda: descendants(self.app, 'menu'))
            if not menus:
                raise Failed(f'no menu showing after the action of "{more[0].name}"')
            self.expect_lines('the menu\'s rows', ['menu'] + [f'  menu item "{n}"' for n in hidden],
                              lambda: ['menu'] + [f'  menu item "{c.name}"' for c in children(menus[0])
                                                  if c.getRoleName() == 'menu item'])
            # Choosing a row brings its tab back and selects it.
            try:
                do_action([c for c in children(menus[0]) if c.name == hidden[-1]][0])
                if not self.wait(lambda: not descendants(self.app, 'menu')):
                    raise Failed(f'the menu stayed after choosing "{hidden[-1]}"')
                tab = descendants(pane, 'page tab', hidden[-1], visible=False)[0]
                if not self.wait(lambda: {'showing', 'selected'} <= state_names(tab)):
                    raise Failed(f'chosen, but not showing and selected: {describe(tab)}')
            finally:
                if descendants(self.app, 'menu'):
                    do_action(more[0])  # closes it: the other checks need the pointer
        self.check('Tabs: the overflow button and its menu', overflow)

    def welcome_page(self):
        # GTK leaves windows of role "tool tip" out of the application's
        # children: a screen reader hears of a tooltip by its showing event.
        def tooltip():
            tab = descendants(self.gallery_strip(), 'page tab', 'Palette', visible=False)[0]
            shown = []

            def on_showing(event):
                try:
                    if event.detail1 and event.source.getRoleName() == 'tool tip':
                        shown.append(f'tool tip "{event.source.name}"')
                except Exception:
                    pass
            self.registry.registerEventListener(on_showing, 'object:state-changed:showing')
            x, y, width, height = tab.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            self.registry.generateMouseEvent(x + width // 2, y + height // 2, 'abs')
            try:
                self.expect_lines('the tooltips shown', ['tool tip "Palette page (gallery --page palette)"'],
                                  lambda: shown[-1:])
            finally:
                self.registry.deregisterEventListener(on_showing, 'object:state-changed:showing')
                self.registry.generateMouseEvent(0, 1000, 'abs')  # below the window
        self.check('Welcome: hovering a tab shows its tooltip', tooltip)

    def splitters_page(self):
        def sash_values():
            return [(round(v[0]), v[1], v[2]) for v in map(value_of, self.sashes())]

        def collapse():
            # Tree order: the collapsible one first, the linked pair last.
            self.expect_lines('the sashes\' values', ['60 (0..100)', '35 (0..100)', '35 (0..100)'],
                              lambda: ['%d (%g..%g)' % v for v in sash_values()[:1] + sash_values()[-2:]])
            sash = self.sashes()[0]
            if not {'expandable', 'expanded', 'focusable'} <= state_names(sash):
                raise Failed(f'not expandable, expanded and focusable: {describe(sash)}')
            do_action(sash, 'collapse')
            self.expect_lines('the collapsed sash', ['value 100, collapsed'],
                              lambda: [sash_state(self.sashes()[0])])
            do_action(sash, 'expand')
            self.expect_lines('the expanded sash', ['value 60, expanded'],
                              lambda: [sash_state(self.sashes()[0])])

        def sash_state(sash):
            folded = [s for s in ('collapsed', 'expanded') if s in state_names(sash)]
            return 'value %d, %s' % (round(value_of(sash)[0]), ' '.join(folded) or 'neither')
        self.check('Splitters: the sashes\' values, collapse and expand', collapse)

    def sashes(self):
        return [s for s in descendants(self.library_frame(), 'separator') if value_of(s) is not None]

    def elements_page(self):
        spinner = 'An animated GIF from the resource archive, stepped by element timers'
        boxes = ['First (Tab)', 'Second', 'Third (Shift+Tab)', 'Fourth']
        texts = ['Elements: one window, no native controls',
                 'This label is docked to the bottom and stretched across the window; make the window '
                 'narrower and it ends in an ellipsis instead of overflowing.'] + boxes

        def elements():
            frame = self.library_frame()
            expected = sorted(f'label "{t}"' for t in texts) + [f'image description="{spinner}"'] + \
                [f'focusable "Focus element: {b}" id="focus-{i + 1}"' for i, b in enumerate(boxes)]
            self.expect_lines('the elements', expected, lambda: sorted(
                f'label "{l.name}"' for l in descendants(frame, 'label')) + [
                f'image description="{i.description}"' for i in descendants(frame, 'image')
                if i.description] + [
                f'focusable "{f.description}" id="{f.accessibleId}"' for f in descendants(frame)
                if 'focusable' in state_names(f) and f.description.startswith('Focus element')])
        self.check('Elements: texts, the picture and the focusable boxes', elements)

    def run(self):
        self.start('tabs')
        try:
            self.tabs_page()
            logs = ['app.log', 'system.log', 'audit.log', 'kernel-and-services-2026-11-24.log',
                    'todo.txt']
            page_strips = {'Workspace': [(logs, 'app.log'), (['search', 'bookmarks'],)]}
            page_checks = {'Welcome': self.welcome_page, 'Splitters': self.splitters_page,
                           'Elements': self.elements_page}
            for title in self.titles:
                if title == 'Tabs':
                    continue
                if not self.select_page(title):
                    print('a11y: the other pages are not checked', flush=True)
                    break
                self.check_strips(title, *page_strips.get(title, []))
                if title in page_checks:
                    page_checks[title]()
            if self.failures:
                print('a11y: the tree seen last (shown parts):\n' +
                      '\n'.join(tree_text(self.library_frame())), flush=True)
        finally:
            if not self.stop():
                self.failures += 1
                print(f'a11y: the gallery ended by itself (status {self.process.returncode})')
        print(f'a11y: {self.failures} check(s) failed', flush=True)
        return 1 if self.failures else 0


def main(launcher, gallery):
    global pyatspi
    os.environ.pop('NO_AT_BRIDGE', None)
    try:
        bus = start_bus(launcher)
    except Failed as failure:
        print(f'a11y: {failure}', file=sys.stderr)
        return 1
    try:
        import pyatspi as imported
        pyatspi = imported
        return Checker(gallery).run()
    except Failed as failure:
        print(f'a11y: {failure}', file=sys.stderr)
        return 1
    finally:
        bus.terminate()
        bus.wait()


if __name__ == '__main__':
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1], sys.argv[2]))
