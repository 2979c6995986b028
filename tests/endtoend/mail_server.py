"""A mail server on the loopback, for test_mail.py. Runs under the system's own Python, where the
library stands that speaks the protocol, until its standard input ends.

Prints the port, and then each mail that it has taken, as one line of JSON each.
"""

import argparse
import asyncio
import base64
import json
import ssl
import sys

from aiosmtpd.smtp import SMTP, AuthResult


class Handler:
    def __init__(self, options):
        self.options = options

    async def handle_RCPT(self, _server, _session, envelope, address, _options):
        if address in self.options.refuse:
            return "550 no such mailbox"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        await asyncio.sleep(self.options.delay)
        print(json.dumps({
            "from": envelope.mail_from,
            "to": envelope.rcpt_tos,
            "encrypted": server.transport.get_extra_info("ssl_object") is not None,
            "user": session.auth_data,
            "content": base64.b64encode(envelope.original_content).decode(),
        }), flush=True)
        return "250 taken"


def authenticate(_server, _session, _envelope, _mechanism, data):
    return AuthResult(success=True, auth_data=f"{data.login.decode()}:{data.password.decode()}")


async def serve(options):
    context = None
    if options.certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(options.certificate, options.key)
    at_once = context if options.at_once else None
    handler = Handler(options)
    loop = asyncio.get_running_loop()
    server = await loop.create_server(
        lambda: SMTP(handler, hostname="mail.test", authenticator=authenticate,
                     auth_require_tls=False, tls_context=None if at_once else context),
        host="127.0.0.1", ssl=at_once)
    print(server.sockets[0].getsockname()[1], flush=True)
    await loop.run_in_executor(None, sys.stdin.read)
    server.close()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--certificate", help="offer STARTTLS with this certificate")
    parser.add_argument("--key")
    parser.add_argument("--at-once", action="store_true", help="encrypt from the first byte")
    parser.add_argument("--refuse", action="append", default=[], metavar="ADDRESS")
    parser.add_argument("--delay", type=float, default=0, help="seconds before a mail is taken")
    asyncio.run(serve(parser.parse_args()))


if __name__ == "__main__":
    main()
