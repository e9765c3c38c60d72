"""Threads: the library works while other threads run Python, and objects guard themselves."""

import threading

import numpy as np
import zrdraw


def test_python_goes_on_while_the_library_works():
    draw = zrdraw.Draw(np.zeros((1000, 2048), np.uint8), "uyvy")
    state = {"works": False, "seen": 0}

    def work():
        state["works"] = True
        draw.fill(0, 0, 1.0)
        state["works"] = False

    for _ in range(5):  # a machine under load may give this thread nothing in one of them
        worker = threading.Thread(target=work)
        worker.start()
        while worker.is_alive() and state["seen"] <= 1000:
            state["seen"] += state["works"]
        worker.join()
    assert state["seen"] > 1000


def test_one_object_serves_one_thread_at_a_time():
    draw = zrdraw.Draw(np.zeros((2, 500, 4), np.uint8), "rgba")

    def work(line, color):
        for _ in range(20):
            for x in range(500):
                draw.set_pixel(x, line, color)

    workers = [threading.Thread(target=work, args=arguments)
               for arguments in [(0, (1, 0, 0)), (1, (0, 0, 1))]]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    # Colour and pixel are set in one, so that no line has the other's colour.
    assert (draw.array[0] == (255, 0, 0, 255)).all() and (draw.array[1] == (0, 0, 255, 255)).all()


def test_two_objects_draw_what_one_alone_does():
    def scene(array):
        draw = zrdraw.Draw(array, "rgb48")
        for i in range(300):
            draw.color = (i % 7 / 7, i % 5 / 5, i % 3 / 3)
            draw.fill_circle(100 + i % 50, 90, 80 - i % 40)
            draw.line(0, i, 199, 299 - i)

    alone, *together = [np.zeros((300, 200, 3), np.uint16) for _ in range(3)]
    scene(alone)
    workers = [threading.Thread(target=scene, args=(array,)) for array in together]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    assert all((array == alone).all() for array in together)
