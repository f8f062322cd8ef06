#!/usr/bin/python3
"""Prints the accessibility tree of one application as a screen reader sees it over AT-SPI:
one line per object, "depth<TAB>role<TAB>name<TAB>states<TAB>description", depth first, with the
role under the name older at-spi2-core releases give it.

Usage: accessible_tree.py APPLICATION_NAME
"""
import sys

import pyatspi

# at-spi2-core 2.56 (Debian 13) names a push button's role "button"; older ones "push button".
ROLE_NAMES = {"button": "push button"}


def walk(node, depth):
    states = sorted(pyatspi.stateToString(s) for s in node.getState().getStates())
    role = ROLE_NAMES.get(node.getRoleName(), node.getRoleName())
    print(f"{depth}\t{role}\t{node.name}\t{','.join(states)}\t{node.description}")
    for index in range(node.childCount):
        walk(node.getChildAtIndex(index), depth + 1)


for application in pyatspi.Registry.getDesktop(0):
    if application is not None and application.name == sys.argv[1]:
        walk(application, 0)
