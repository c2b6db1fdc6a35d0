"""LibreOffice without a window, on a fresh profile with the extension, driven from the system's Python."""
import pathlib
import shutil
import subprocess
import time
import uuid

import uno
import unohelper
from com.sun.star.beans import PropertyValue
from com.sun.star.connection import NoConnectException
from com.sun.star.lang import DisposedException
from com.sun.star.task import XInteractionHandler
from com.sun.star.ucb import XCommandEnvironment

PROGRAM = pathlib.Path("/usr/lib/libreoffice/program/soffice.bin")
WANTS_RESTART = 81  # what the first start with a fresh profile ends with
IDENTIFIER = "org.zavrel.functions"


class Approval(unohelper.Base, XCommandEnvironment, XInteractionHandler):
    """Answers yes, as whoever adds an extension by hand does."""

    def getInteractionHandler(self):
        return self

    def getProgressHandler(self):
        return None

    def handle(self, request):
        for answer in request.getContinuations():
            if answer.queryInterface(uno.getTypeByName("com.sun.star.task.XInteractionApprove")):
                answer.select()


def url(path):
    return uno.systemPathToFileUrl(str(pathlib.Path(path).resolve()))


def properties(**values):
    return tuple(PropertyValue(name, 0, value, 0) for name, value in values.items())


class Office:
    def __init__(self, profile, extension=None):
        self.profile = pathlib.Path(profile)
        shutil.rmtree(self.profile, ignore_errors=True)
        self.profile.mkdir(parents=True)
        self.process = None
        if extension is not None:
            with self:
                self.manager.addExtension(url(extension), (), "user", None, Approval())

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.stop()

    @property
    def manager(self):
        return self.context.getValueByName("/singletons/com.sun.star.deployment.ExtensionManager")

    def start(self):
        pipe = f"zavrel{uuid.uuid4().hex}"
        command = [PROGRAM, "--headless", "--norestore", "--nodefault", "--nologo",
                   f"-env:UserInstallation={self.profile.resolve().as_uri()}", f"--accept=pipe,name={pipe};urp;"]
        local = uno.getComponentContext()
        resolver = local.ServiceManager.createInstanceWithContext("com.sun.star.bridge.UnoUrlResolver", local)
        self.process = subprocess.Popen(command)
        deadline = time.monotonic() + 240
        while True:
            try:
                self.context = resolver.resolve(f"uno:pipe,name={pipe};urp;StarOffice.ComponentContext")
                break
            except NoConnectException:
                if self.process.poll() == WANTS_RESTART:
                    self.process = subprocess.Popen(command)
                elif self.process.poll() is not None or time.monotonic() > deadline:
                    self.stop()
                    raise
                time.sleep(0.1)
        self.desktop = self.context.ServiceManager.createInstanceWithContext("com.sun.star.frame.Desktop", self.context)

    def stop(self):
        if self.process is None:
            return
        if self.process.poll() is None:
            try:
                self.desktop.terminate()
            except (AttributeError, DisposedException):
                pass
            try:
                self.process.wait(20)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self.process = None

    def new(self):
        return self.desktop.loadComponentFromURL("private:factory/scalc", "_blank", 0, properties(Hidden=True))

    def open(self, path):
        return self.desktop.loadComponentFromURL(url(path), "_blank", 0, properties(Hidden=True))

    def save(self, document, path, filter_name):
        document.storeToURL(url(pathlib.Path(path).parent) + "/" + pathlib.Path(path).name,
                            properties(FilterName=filter_name))
