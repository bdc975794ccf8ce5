"""Real FTP and mail servers on 127.0.0.1, and the accidents that happen to them.

README.md tells how a test uses this; each module documents its part.
"""
