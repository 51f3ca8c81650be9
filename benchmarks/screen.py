"""Tells when something is first drawn on a screen that was black before."""

import ctypes
import time

ALL_PLANES = ctypes.c_ulong(0xFFFFFFFFFFFFFFFF)
Z_PIXMAP = 2


class Screen:
    """Pixels of an X display, asked for directly: starting a tool for each look is too slow."""

    def __init__(self, display):
        self._x = ctypes.CDLL("libX11.so.6")
        self._x.XOpenDisplay.restype = ctypes.c_void_p
        self._x.XDefaultRootWindow.restype = ctypes.c_ulong
        self._x.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        self._x.XGetImage.restype = ctypes.c_void_p
        self._x.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                                      ctypes.c_uint, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
        self._x.XGetPixel.restype = ctypes.c_ulong
        self._x.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
        self._x.XDestroyImage.argtypes = [ctypes.c_void_p]
        self._display = self._x.XOpenDisplay(display.encode())
        self._root = self._x.XDefaultRootWindow(self._display)

    def is_black(self, x, y):
        image = self._x.XGetImage(self._display, self._root, x, y, 1, 1, ALL_PLANES, Z_PIXMAP)
        pixel = self._x.XGetPixel(image, 0, 0)
        self._x.XDestroyImage(image)
        return pixel & 0xFFFFFF == 0

    def await_drawing(self, places, within):
        """The monotonic moment at which one of the places was first seen drawn."""
        deadline = time.monotonic() + within
        while time.monotonic() < deadline:
            if not all(self.is_black(x, y) for x, y in places):
                return time.monotonic()
            time.sleep(0.001)
        raise AssertionError("nothing was drawn")
