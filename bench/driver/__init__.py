"""Runs the measurements, judges them and writes the report: see script/bench."""
