#!/usr/bin/python3
"""Reads Lanternic's accessible tree over AT-SPI, as a screen reader does.

Commands, one a line on stdin, each answered with one line of JSON on stdout:
  tree            the panel's tree, as text lines ("role 'name' [description] {states}")
  rows            the list and its items: name, description, index, states, actions
  focused         the name and role of the object that has the focus
  menu            the items of the popup menu last shown, and the menu item last focused
"""
import json
import sys
import time

import pyatspi
from gi.repository import GLib

# Popup menus are not children of the application: a screen reader learns of them from the
# events of their showing and of their items taking the focus, and so does this.
menus = []
focused_items = []


def on_showing(event):
    try:
        if event.detail1 and event.source.getRole() == pyatspi.ROLE_POPUP_MENU:
            menus.append(event.source)
    except GLib.Error:  # from an application that has gone
        pass


def on_focus(event):
    try:
        if event.detail1 and event.source.getRole() in (pyatspi.ROLE_MENU_ITEM, pyatspi.ROLE_MENU):
            focused_items.append(event.source)
            menus.append(event.source.parent)
    except GLib.Error:
        pass


def pump(seconds):
    context = GLib.MainContext.default()
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        while context.pending():
            context.iteration(False)
        time.sleep(0.02)


pyatspi.Registry.registerEventListener(on_showing, "object:state-changed:showing")
pyatspi.Registry.registerEventListener(on_focus, "object:state-changed:focused")


def app():
    desktop = pyatspi.Registry.getDesktop(0)
    for index in range(desktop.childCount):
        child = desktop.getChildAtIndex(index)
        if child is not None and child.name == "Lanternic":
            return child
    return None


def walk(node, depth=0):
    yield node, depth
    for index in range(node.childCount):
        child = node.getChildAtIndex(index)
        if child is not None:
            yield from walk(child, depth + 1)


def states(node):
    kept = (pyatspi.STATE_FOCUSED, pyatspi.STATE_FOCUSABLE, pyatspi.STATE_SELECTED,
            pyatspi.STATE_CHECKED, pyatspi.STATE_EXPANDABLE, pyatspi.STATE_SHOWING)
    held = node.getState()
    return [pyatspi.stateToString(s) for s in kept if held.contains(s)]


def actions(node):
    try:
        action = node.queryAction()
    except NotImplementedError:
        return []
    return [[action.getName(i), action.getDescription(i)] for i in range(action.nActions)]


def showing(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


def answer(command):
    lanternic = app()
    if lanternic is None:
        return {"error": "no application named Lanternic"}
    nodes = list(walk(lanternic))
    if command == "tree":
        return {"lines": ["  " * depth + f"{node.getRoleName()} {node.name!r}"
                          + (f" [{node.description}]" if node.description else "")
                          for node, depth in nodes if showing(node) or depth < 2],
                "texts": [text for node, _ in nodes for text in (node.name, node.description)
                          if text]}
    if command == "rows":
        lists = [node for node, _ in nodes if node.getRole() == pyatspi.ROLE_LIST and showing(node)]
        if not lists:
            return {"error": "no list"}
        rows = lists[0]
        items = []
        for index in range(rows.childCount):
            item = rows.getChildAtIndex(index)
            sparkline = [n.name for n, _ in walk(item) if n.name.startswith("History")]
            items.append({"role": item.getRoleName(), "name": item.name,
                          "description": item.description, "index": item.getIndexInParent(),
                          "states": states(item), "actions": actions(item),
                          "sparkline": sparkline[0] if sparkline else None})
        return {"list": rows.name, "count": rows.childCount, "items": items}
    if command == "focused":
        for node, _ in nodes:
            if node.getState().contains(pyatspi.STATE_FOCUSED):
                return {"role": node.getRoleName(), "name": node.name}
        return {"role": None, "name": None}
    if command == "menu":
        pump(0.1)
        if not menus:
            return {"items": None}
        menu = menus[-1]
        return {"role": menu.getRoleName(),
                "focused": focused_items[-1].name if focused_items else None,
                "items": [menu.getChildAtIndex(i).name for i in range(menu.childCount)]}
    return {"error": f"unknown command {command}"}


for line in sys.stdin:
    try:
        print(json.dumps(answer(line.strip())), flush=True)
    except Exception as error:  # a tree that changes under the walk: say so, and go on
        print(json.dumps({"error": repr(error)}), flush=True)
