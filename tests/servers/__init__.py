"""Real FTP and mail servers on 127.0.0.1, and what breaks between; README.md tells how to use them."""
