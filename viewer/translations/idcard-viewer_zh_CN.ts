<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Card</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sex</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ethnic group</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date of birth</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Identity number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Issuing authority</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Valid from</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Valid to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Travel permit number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Times issued</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chinese name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nationality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Country code</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Card number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Extra item</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resident identity card</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Foreigner&apos;s permanent residence card, 2017 edition</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Foreigner&apos;s permanent residence card, new edition</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Residence permit for Hong Kong, Macao and Taiwan residents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader delivered no photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader delivered the photo in the card&apos;s compressed form, not as a picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader delivered the photo in a form that is not known</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Results</name>
    <message>
        <source>Mend the program: it must pass seven pointers, though only one record is filled.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The card was read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader delivered a card of one of the four kinds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing needs to be done.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The call succeeded, but nothing was read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader reported a kind of card that this library does not name, or ended the read with an unexpected code.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lay the card flat on the reader, keep it still and read once more. Only resident identity cards, residence permits for Hong Kong, Macao and Taiwan residents and foreigners&apos; permanent residence cards can be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader could not be opened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No reader is connected, this user may not use it, another program holds it, or the reader maker&apos;s library was not found or failed while it opened the reader. A reader that answers the read itself with 1 gives this code as well.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plug the reader in, end other programs that use it, check the access rights of its device, and see that the reader maker&apos;s library stands beside libidcard_reader_lib.so or where the loader looks for libraries.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading the card was broken off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader maker&apos;s library failed while it read, or memory ran out.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lay the card on the reader again and read once more; if it happens again, unplug the reader, plug it in and see that the computer has free memory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No card was found on the reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No card lies on the reader, it lies beside the antenna, it is not a card that the reader knows, or the reader maker&apos;s library failed while it looked for a card.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lay the card flat on the middle of the reader, take other cards away and read once more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The photo of the card could not be decoded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The card delivered its photo compressed, and the photo decoder was not found, failed, or refused the data.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>See that the photo decoder&apos;s library stands beside libidcard_reader_lib.so or where the loader looks for libraries; if it does, read the card once more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The program passed no place for the kind of card.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The argument cardKind is null.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The program passed no record for resident identity cards.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The argument cn is null.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The program passed no record for foreigners&apos; cards of the 2017 edition.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The argument f2017 is null.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The program passed no record for foreigners&apos; cards of the new edition.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The argument fNew is null.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The program passed no record for residence permits.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The argument hmt is null.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The program passed no place for the picture of the front.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The argument frontImage is null.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The program passed no place for the picture of the back.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The argument backImage is null.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unplug the reader, plug it in, straight into the computer if it hangs on a hub, and read once more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lay the card flat on the middle of the reader, keep it still, take other cards away and read once more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read once more. If it happens again, see with &quot;idcard-reader usb --list&quot; that the ids are those of the reader, and plug the reader in anew.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader gave no answer within five seconds, or the transfer failed: it hangs, its cable is bad, or the device with these ids is no card reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The device did not take the whole command: it hangs, its cable is bad, or the device with these ids is no card reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader&apos;s answer is no card record.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader found the card and delivered its record.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>USB could not be used.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The system has no USB, or this program may not see it: libusb could not be set up.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>See that /dev/bus/usb exists; in a container it must be handed in.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The USB devices could not be listed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no list of devices, or memory ran out.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>See that /sys/bus/usb and /dev/bus/usb exist and can be read; in a container both must be handed in.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The search for the reader was broken off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A USB device that is listed before the reader could not be described.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unplug other USB devices, or plug the reader in anew, and read once more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader is there, but the system refused to open it, for instance because it was being plugged in or the program has too many files open.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This user may not use the reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader is there, but its device node is not open to this user: the udev rule for the reader is missing, or the user is not in its group.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Install the rule file 69-idcard-reader.rules in /etc/udev/rules.d or /usr/lib/udev/rules.d with the reader&apos;s ids in it, add the user to the group idcard-reader, log in anew and plug the reader in anew.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no such reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No USB device has the vendor and product id that --device named: the reader is not plugged in, or has other ids.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plug the reader in and see with &quot;idcard-reader usb --list&quot; which ids it has.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader is in use.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another program holds the reader, for instance one that reads cards through the reader maker&apos;s library, or the computer&apos;s kernel would not give it up.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End the other program (as root, &quot;fuser -v&quot; with the device&apos;s node names it) and read once more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader could not be reset.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader was opened and did not come back from its reset.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No card lies on the reader, it lies beside the antenna, or it is not a card that the reader knows. A device that is no card reader may answer so as well.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader did not answer whether a card is there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader could not be asked for a card.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The card was lost.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader found the card and could not select it: it was moved, or two cards lie on the reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader did not answer whether it selected the card.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader could not be told to select the card.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The answer is not as long as a record with no, one or two fingerprints.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The answer does not begin as the reader&apos;s frames do.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader reported a failure, or lengths of text and photo that no card has.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The answer is longer or shorter than it says it is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The answer declares an amount of fingerprint data that no card has.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The card was found, but the reader did not deliver its record within five seconds, or the transfer failed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader could not be told to read the card.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The card gave no data.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The card was taken off while it was read, it lies beside the antenna, or it is not a card that the reader knows.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader was unplugged while it was used.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader was there and is not any more: its cable came off, it lost its power, or it broke down.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plug the reader in again and read once more.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>viewer::MainWindow</name>
    <message>
        <source>Card viewer</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
