<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Attention</name>
    <message>
        <source>A text is cut.</source>
        <translation>有文字被截断。</translation>
    </message>
    <message>
        <source>The holder is a minor.</source>
        <translation>持证人未成年。</translation>
    </message>
    <message>
        <source>The holder is a minor, %1 years old.</source>
        <translation>持证人未成年，%1 岁。</translation>
    </message>
</context>
<context>
    <name>Browser</name>
    <message>
        <source>The browser&apos;s extension is not the one that reads cards.</source>
        <translation>浏览器中的扩展程序不是用于读卡的扩展程序。</translation>
    </message>
    <message>
        <source>Install the extension and idcard-reader-browser of the same version.</source>
        <translation>请安装同一版本的扩展程序和 idcard-reader-browser。</translation>
    </message>
    <message>
        <source>Correct the page: a request has the keys include, timeout and language alone.</source>
        <translation>请更正网页：请求只能含有 include、timeout 和 language 三个键。</translation>
    </message>
    <message>
        <source>The page&apos;s request is wrong.</source>
        <translation>网页的请求有误。</translation>
    </message>
    <message>
        <source>The list of the sites that may read cards cannot be used.</source>
        <translation>允许读卡的网站列表无法使用。</translation>
    </message>
    <message>
        <source>Ask the administrator to correct the list.</source>
        <translation>请管理员更正该列表。</translation>
    </message>
    <message>
        <source>This site may not read cards here.</source>
        <translation>此网站不得在本机读卡。</translation>
    </message>
    <message>
        <source>Ask the administrator to allow the site, if it is to read cards.</source>
        <translation>如果此网站需要读卡，请管理员允许该网站。</translation>
    </message>
    <message>
        <source>The program that reads cards could not be started.</source>
        <translation>无法启动读卡程序。</translation>
    </message>
    <message>
        <source>Install idcard-reader-tools again.</source>
        <translation>请重新安装 idcard-reader-tools。</translation>
    </message>
    <message>
        <source>The program that reads cards failed without saying why.</source>
        <translation>读卡程序失败，未说明原因。</translation>
    </message>
    <message>
        <source>Read once more; if it happens again, run &quot;idcard-reader doctor&quot; on this machine.</source>
        <translation>请重新读取；如果再次发生，请在本机运行“idcard-reader doctor”。</translation>
    </message>
    <message>
        <source>The program that reads cards did not end in time.</source>
        <translation>读卡程序未能按时结束。</translation>
    </message>
    <message>
        <source>Unplug the reader, plug it in again and read once more.</source>
        <translation>请拔下读卡器并重新插入，然后重新读取。</translation>
    </message>
    <message>
        <source>The card&apos;s data is more than a browser takes.</source>
        <translation>证件的数据超出浏览器可接收的大小。</translation>
    </message>
    <message>
        <source>Ask for less: leave out the pictures, or the photo.</source>
        <translation>请减少所请求的内容：不请求正反面图像或照片。</translation>
    </message>
    <message>
        <source>A request has at most %1 bytes.</source>
        <translation>请求最多为 %1 字节。</translation>
    </message>
    <message>
        <source>One request is answered at a time.</source>
        <translation>一次只处理一个请求。</translation>
    </message>
    <message>
        <source>%1 is not in %2.</source>
        <translation>%1 不在 %2 中。</translation>
    </message>
    <message>
        <source>It is more than %1 bytes.</source>
        <translation>数据超过 %1 字节。</translation>
    </message>
    <message>
        <source>It went on after the time limit and was ended.</source>
        <translation>超过时限后仍在运行，已被结束。</translation>
    </message>
    <message>
        <source>This program serves %1, not %2.</source>
        <translation>此程序为 %1 服务，而不是 %2。</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2.</source>
        <translation>无法读取 %1：%2。</translation>
    </message>
    <message>
        <source>%1 is no file.</source>
        <translation>%1 不是文件。</translation>
    </message>
    <message>
        <source>%1 belongs to the user with the number %2, not to %3.</source>
        <translation>%1 属于编号为 %2 的用户，而不是 %3。</translation>
    </message>
    <message>
        <source>%1 can be written by others than its owner.</source>
        <translation>除所有者外，其他用户也可写入 %1。</translation>
    </message>
    <message>
        <source>%1 is larger than %2 bytes.</source>
        <translation>%1 大于 %2 字节。</translation>
    </message>
    <message>
        <source>%1, line %2: &quot;%3&quot; is no origin, such as https://pms.example or https://pms.example:8443.</source>
        <translation>%1 第 %2 行：“%3”不是网站来源；正确的写法如 https://pms.example 或 https://pms.example:8443。</translation>
    </message>
    <message>
        <source>&quot;%1&quot;</source>
        <translation>“%1”</translation>
    </message>
    <message>
        <source>There is no key %1.</source>
        <translation>没有键 %1。</translation>
    </message>
    <message>
        <source>The key %1 is missing.</source>
        <translation>缺少键 %1。</translation>
    </message>
    <message>
        <source>The key include takes a list of photo and pictures.</source>
        <translation>键 include 的值是由 photo 和 pictures 组成的列表。</translation>
    </message>
    <message>
        <source>The key timeout takes a whole number of seconds from 1 to %1.</source>
        <translation>键 timeout 的值是 1 到 %1 之间的整数秒数。</translation>
    </message>
    <message>
        <source>The key language takes a language such as en or zh-CN.</source>
        <translation>键 language 的值是语言，如 en 或 zh-CN。</translation>
    </message>
    <message>
        <source>The key origin takes a text.</source>
        <translation>键 origin 的值是文本。</translation>
    </message>
</context>
<context>
    <name>BrowserSetup</name>
    <message>
        <source>%1 cannot be written: %2.</source>
        <translation>无法写入 %1：%2。</translation>
    </message>
    <message>
        <source>%1 is missing; install idcard-reader-browser again.</source>
        <translation>缺少 %1；请重新安装 idcard-reader-browser。</translation>
    </message>
    <message>
        <source>%1, the browser, cannot be started: %2.</source>
        <translation>无法启动浏览器 %1：%2。</translation>
    </message>
    <message>
        <source>%1, the browser, did not pack the extension: %2</source>
        <translation>浏览器 %1 未能打包扩展程序：%2</translation>
    </message>
    <message>
        <source>%1 cannot be removed: %2.</source>
        <translation>无法删除 %1：%2。</translation>
    </message>
    <message>
        <source>%1 cannot be removed.</source>
        <translation>无法删除 %1。</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>%1 is missing</source>
        <translation>缺少 %1</translation>
    </message>
    <message>
        <source>Sites</source>
        <translation>网站</translation>
    </message>
    <message>
        <source>List</source>
        <translation>列表</translation>
    </message>
    <message>
        <source>%1 sets the policy ExtensionSettings too, and the browser takes that of one file alone: put the entry of this program&apos;s policy there.
</source>
        <translation>%1 也设置了策略 ExtensionSettings，而浏览器只采用其中一个文件的设置：请将本程序策略文件中的条目写入该文件。
</translation>
    </message>
    <message>
        <source>Only root can do that: run it with sudo.</source>
        <translation>只有 root 可以执行此操作：请使用 sudo 运行。</translation>
    </message>
    <message>
        <source>a site such as https://pms.example or https://pms.example:8443</source>
        <translation>网站，如 https://pms.example 或 https://pms.example:8443</translation>
    </message>
    <message>
        <source>Show the sites and what this program has written.</source>
        <translation>显示网站以及本程序写入的文件。</translation>
    </message>
    <message>
        <source>Remove all that this program has written, and all sites.</source>
        <translation>删除本程序写入的所有文件，并删除所有网站。</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>显示此帮助。</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>显示版本。</translation>
    </message>
    <message>
        <source>Done as asked.</source>
        <translation>已按要求完成。</translation>
    </message>
    <message>
        <source>This user is not root, the list has a mistake, or a file could not be written or removed.</source>
        <translation>当前用户不是 root，列表有误，或者无法写入或删除文件。</translation>
    </message>
    <message>
        <source>Wrong usage: an unknown option or value.</source>
        <translation>用法错误：未知的选项或值。</translation>
    </message>
    <message>
        <source>Lets web pages read cards in the browsers of this machine: writes the list of the sites that may, makes the browser&apos;s extension for these sites, and has the browser install it. It is run by root.</source>
        <translation>允许本机浏览器中的网页读卡：写入允许读卡的网站列表，为这些网站制作浏览器扩展程序，并让浏览器安装它。须以 root 身份运行。</translation>
    </message>
    <message>
        <source>Start Firefox again. Only one that comes from Debian takes an extension from this machine that its maker has not signed.
</source>
        <translation>请重新启动 Firefox。只有 Debian 提供的 Firefox 才接受本机上未经签名的扩展程序。
</translation>
    </message>
    <message>
        <source>Load the site&apos;s page again in a browser that is open. One that is closed takes some hours from its next start to speak to a further site; give the same command again while it is open.
Other browsers of Chromium&apos;s family look below other folders, such as /etc/opt/chrome or /etc/opt/edge: copy the two files there that --show names for chromium.
</source>
        <translation>请在打开的浏览器中重新载入该网站的网页。关闭着的浏览器要在下次启动几小时后才能与新增的网站通信；可在它打开时再次运行同一命令。
其他 Chromium 系列浏览器使用其他文件夹，如 /etc/opt/chrome 或 /etc/opt/edge：请将 --show 在 chromium 下列出的两个文件复制到那里。
</translation>
    </message>
    <message>
        <source>In this browser: chromium, if not given, or firefox.</source>
        <translation>用于此浏览器：chromium（不指定时）或 firefox。</translation>
    </message>
    <message>
        <source>chromium or firefox</source>
        <translation>chromium 或 firefox</translation>
    </message>
    <message>
        <source>Make the extension again for the sites that are listed, in the browsers that have it. An upgrade of the package does that too.</source>
        <translation>在已安装该扩展程序的浏览器中，为已列出的网站重新制作扩展程序。升级软件包时也会这样做。</translation>
    </message>
    <message>
        <source>Let the pages of this site read cards, beside those that are listed already: https and the host, and the port unless it is the usual one. Use http only for a site on your own network that cannot offer https.</source>
        <translation>除已列出的网站外，也允许此网站的网页读卡：写作 https 和主机名，端口不是默认端口时还须写明端口。只有内部网络中无法提供 https 的网站才使用 http。</translation>
    </message>
</context>
<context>
    <name>Card</name>
    <message>
        <source>Name</source>
        <translation>姓名</translation>
    </message>
    <message>
        <source>Sex</source>
        <translation>性别</translation>
    </message>
    <message>
        <source>Ethnic group</source>
        <translation>民族</translation>
    </message>
    <message>
        <source>Date of birth</source>
        <translation>出生日期</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>住址</translation>
    </message>
    <message>
        <source>Identity number</source>
        <translation>公民身份号码</translation>
    </message>
    <message>
        <source>Issuing authority</source>
        <translation>签发机关</translation>
    </message>
    <message>
        <source>Valid from</source>
        <translation>有效期起</translation>
    </message>
    <message>
        <source>Valid to</source>
        <translation>有效期止</translation>
    </message>
    <message>
        <source>Travel permit number</source>
        <translation>通行证号码</translation>
    </message>
    <message>
        <source>Times issued</source>
        <translation>签发次数</translation>
    </message>
    <message>
        <source>Chinese name</source>
        <translation>中文姓名</translation>
    </message>
    <message>
        <source>Nationality</source>
        <translation>国籍</translation>
    </message>
    <message>
        <source>Country code</source>
        <translation>国家代码</translation>
    </message>
    <message>
        <source>Card number</source>
        <translation>证件号码</translation>
    </message>
    <message>
        <source>Extra item</source>
        <translation>附加项</translation>
    </message>
    <message>
        <source>Resident identity card</source>
        <translation>居民身份证</translation>
    </message>
    <message>
        <source>Foreigner&apos;s permanent residence card, 2017 edition</source>
        <translation>外国人永久居留身份证（2017 版）</translation>
    </message>
    <message>
        <source>Foreigner&apos;s permanent residence card, new edition</source>
        <translation>外国人永久居留身份证（新版）</translation>
    </message>
    <message>
        <source>Residence permit for Hong Kong, Macao and Taiwan residents</source>
        <translation>港澳台居民居住证</translation>
    </message>
    <message>
        <source>The reader delivered the photo in the card&apos;s compressed form, not as a picture</source>
        <translation>读卡器给出的是证件中压缩的照片数据，不是图片</translation>
    </message>
    <message>
        <source>The reader delivered the photo in a form that is not known</source>
        <translation>读卡器给出的照片格式无法识别</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>BMP picture, 102 x 126 pixels</source>
        <translation>BMP 图片，102 x 126 像素</translation>
    </message>
    <message>
        <source>compressed, not a picture</source>
        <translation>压缩数据，不是图片</translation>
    </message>
    <message>
        <source>in a form that is not known</source>
        <translation>格式无法识别</translation>
    </message>
    <message>
        <source>unknown; the reader delivered an unusual amount of data</source>
        <translation>未知；读卡器给出的数据量异常</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>证件种类</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>照片</translation>
    </message>
    <message>
        <source>Fingerprints</source>
        <translation>指纹</translation>
    </message>
    <message>
        <source>%1; %2 is not written.</source>
        <translation>%1；不写入 %2。</translation>
    </message>
    <message>
        <source>The card has expired.</source>
        <translation>证件已过期。</translation>
    </message>
    <message>
        <source>The card is not valid yet.</source>
        <translation>证件尚未生效。</translation>
    </message>
    <message>
        <source>The check digit of the number is wrong.</source>
        <translation>号码的校验码有误。</translation>
    </message>
    <message>
        <source>The country&apos;s code is not known.</source>
        <translation>国家代码无法识别。</translation>
    </message>
    <message>
        <source>%1 is cut; the record has: %2</source>
        <translation>%1被截断；记录中为：%2</translation>
    </message>
    <message>
        <source>Front picture</source>
        <translation>正面图像</translation>
    </message>
    <message>
        <source>Back picture</source>
        <translation>背面图像</translation>
    </message>
    <message>
        <source>the permit&apos;s number begins with none of 81, 82, 83</source>
        <translation>居住证号码不以 81、82 或 83 开头</translation>
    </message>
    <message>
        <source>the library painted none</source>
        <translation>本库没有绘制</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>none: %1</source>
        <translation>无：%1</translation>
    </message>
    <message>
        <source>Saved as</source>
        <translation>已保存为</translation>
    </message>
    <message>
        <source>There is no picture of the card&apos;s front: %1</source>
        <translation>没有证件正面图像：%1</translation>
    </message>
    <message>
        <source>There is no picture of the card&apos;s back: %1</source>
        <translation>没有证件背面图像：%1</translation>
    </message>
    <message>
        <source>The reader delivered no photo</source>
        <translation>读卡器没有给出照片</translation>
    </message>
    <message>
        <source>What was read may be wrong: read the card once more.</source>
        <translation>读到的内容可能有误：请再读一次证件。</translation>
    </message>
</context>
<context>
    <name>CardSheet</name>
    <message>
        <source>There is no picture of either side of the card. Read the card again.</source>
        <translation>没有证件的正面或背面图像。请重新读卡。</translation>
    </message>
    <message>
        <source>The picture of the card&apos;s front is damaged. Read the card again.</source>
        <translation>证件正面图像已损坏。请重新读卡。</translation>
    </message>
    <message>
        <source>The picture of the card&apos;s back is damaged. Read the card again.</source>
        <translation>证件背面图像已损坏。请重新读卡。</translation>
    </message>
    <message>
        <source>The PDF page could not be made. Close other programs to free memory, and try again.</source>
        <translation>无法生成 PDF 页面。请关闭其他程序以释放内存，然后重试。</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>See &quot;%1&quot;.</source>
        <translation>请看“%1”。</translation>
    </message>
    <message>
        <source>Begin with the simulator and a card on it: the name of a built-in card, which &quot;idcard-reader cards&quot; lists, or the file of a description.</source>
        <translation>启动时使用模拟器，并放上一张证件：内置证件的名称（由“idcard-reader cards”列出），或描述文件。</translation>
    </message>
    <message>
        <source>Faults of the simulator, separated by commas, such as &quot;read-fails=3&quot;.</source>
        <translation>模拟器的故障，用逗号分隔，例如“read-fails=3”。</translation>
    </message>
    <message>
        <source>Begin with the reader on USB that has these ids, such as 1209:0001.</source>
        <translation>启动时使用具有该标识的 USB 读卡器，例如 1209:0001。</translation>
    </message>
    <message>
        <source>The reader on USB is a simulated one: decode its photos.</source>
        <translation>USB 读卡器是模拟的，解码其照片。</translation>
    </message>
    <message>
        <source>Read each new card.</source>
        <translation>自动读取每张新放上的证件。</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>显示此帮助。</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>显示版本。</translation>
    </message>
    <message>
        <source>Reads Chinese identity documents with a desktop card reader and shows them in a window.</source>
        <translation>通过台式读卡器读取中国身份证件，并在窗口中显示。</translation>
    </message>
    <message>
        <source>%1 has no option %2.</source>
        <translation>%1 没有选项 %2。</translation>
    </message>
    <message>
        <source>%1 has no option %2; did you mean %3?</source>
        <translation>%1 没有选项 %2；您是不是要用 %3？</translation>
    </message>
    <message>
        <source>--fault is refused: %1</source>
        <translation>--fault 的值不被接受：%1</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>从 %1 到 %2 的整数</translation>
    </message>
    <message>
        <source>[options]</source>
        <translation>[选项]</translation>
    </message>
    <message>
        <source>%1 needs a %2: &quot;%3&quot;.</source>
        <translation>%1 需要 %2：“%3”。</translation>
    </message>
    <message>
        <source>%1 needs %2.</source>
        <translation>%1 需要 %2。</translation>
    </message>
    <message>
        <source> or </source>
        <translation> 或 </translation>
    </message>
    <message>
        <source>%1 can be given only once.</source>
        <translation>%1 只能给出一次。</translation>
    </message>
    <message>
        <source>%1 only has a meaning together with --%2.</source>
        <translation>%1 须与 --%2 一起使用。</translation>
    </message>
    <message>
        <source> or --</source>
        <translation> 或 --</translation>
    </message>
    <message>
        <source>%1 has no meaning together with %2.</source>
        <translation>%1 不能与 %2 一起使用。</translation>
    </message>
    <message>
        <source>%2 takes no argument %1.</source>
        <translation>%2 不接受参数 %1。</translation>
    </message>
    <message>
        <source>%1 needs a value: &quot;%2&quot;.</source>
        <translation>%1 需要一个值：“%2”。</translation>
    </message>
    <message>
        <source>%1 takes %2, not %3.</source>
        <translation>%1 的值应为%2，而不是“%3”。</translation>
    </message>
    <message>
        <source>
%1:
</source>
        <translation>
%1：
</translation>
    </message>
    <message>
        <source>Begin with the holder&apos;s data and photo covered.</source>
        <translation>开始时遮盖持证人的信息和照片。</translation>
    </message>
    <message>
        <source>Begin with this way to the reader: configured, as the configuration files say; library, through its maker&apos;s library; usb, without it; service, through the D-Bus service of this machine.</source>
        <translation>启动时采用这种读卡方式：configured，按配置文件；library，通过厂商的库；usb，不通过厂商的库；service，通过本机的 D-Bus 服务。</translation>
    </message>
    <message>
        <source>Exit status</source>
        <translation>退出状态</translation>
    </message>
    <message>
        <source>Usage: %1

</source>
        <translation>用法：%1

</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>选项</translation>
    </message>
    <message>
        <source>configured, library, usb or service</source>
        <translation>configured、library、usb 或 service</translation>
    </message>
    <message>
        <source>The window was closed.</source>
        <translation>窗口已关闭。</translation>
    </message>
    <message>
        <source>Standard output could not be written.</source>
        <translation>无法写入标准输出。</translation>
    </message>
    <message>
        <source>Wrong usage: an unknown option or value, or a fault that is refused.</source>
        <translation>用法错误：未知的选项或值，或者不接受的故障。</translation>
    </message>
    <message>
        <source>%1 is not written in the encoding of the locale.</source>
        <translation>%1 不是按当前区域设置的编码写成的。</translation>
    </message>
</context>
<context>
    <name>Configuration</name>
    <message>
        <source>&quot;%1&quot;</source>
        <translation>“%1”</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1（%2）</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>Correct the line, or put # before it.</source>
        <translation>请改正该行，或在行首加上 #。</translation>
    </message>
    <message>
        <source>Correct the file, or remove it.</source>
        <translation>请改正该文件，或将其删除。</translation>
    </message>
    <message>
        <source>there is no setting %1. There are: %2.</source>
        <translation>没有设置%1。可用的设置有：%2。</translation>
    </message>
    <message>
        <source>%1 is set in line %2 already.</source>
        <translation>%1 已在第 %2 行设置。</translation>
    </message>
    <message>
        <source>%1 takes %2, not %3.</source>
        <translation>%1 的值应为%2，而不是“%3”。</translation>
    </message>
    <message>
        <source>the line is not UTF-8 text.</source>
        <translation>该行不是 UTF-8 文字。</translation>
    </message>
    <message>
        <source>Save the file as UTF-8.</source>
        <translation>请将文件存为 UTF-8。</translation>
    </message>
    <message>
        <source>%1 is no setting. A line is &quot;key = value&quot;, with one of: %2.</source>
        <translation>%1不是设置。每行的形式为“key = value”，可用的设置有：%2。</translation>
    </message>
    <message>
        <source>it cannot be read: %1.</source>
        <translation>无法读取：%1。</translation>
    </message>
    <message>
        <source>it is not a file of text.</source>
        <translation>它不是文本文件。</translation>
    </message>
    <message>
        <source>it is larger than %1 bytes.</source>
        <translation>它超过 %1 字节。</translation>
    </message>
    <message>
        <source>library or usb</source>
        <translation>“library”或“usb”</translation>
    </message>
    <message>
        <source>a vendor and a product id of four hexadecimal digits each, such as 1209:0001</source>
        <translation>厂商标识和产品标识，各四位十六进制数字，例如 1209:0001</translation>
    </message>
    <message>
        <source>%1, line %2</source>
        <translation>%1，第 %2 行</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
</context>
<context>
    <name>Descriptions</name>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>is neither a built-in card nor a file; did you mean %1?</source>
        <translation>既不是内置证件，也不是文件；您是不是要用 %1？</translation>
    </message>
    <message>
        <source>is not a regular file</source>
        <translation>不是普通文件</translation>
    </message>
    <message>
        <source>cannot be read: %1</source>
        <translation>无法读取：%1</translation>
    </message>
    <message>
        <source>is larger than a photo may be (%1 bytes)</source>
        <translation>超过了照片允许的大小（%1 字节）</translation>
    </message>
    <message>
        <source>&quot;%1&quot; %2</source>
        <translation>“%1”%2</translation>
    </message>
    <message>
        <source>is not eight digits YYYYMMDD</source>
        <translation>不是八位数字 YYYYMMDD</translation>
    </message>
    <message>
        <source>is not a day of the calendar</source>
        <translation>不是日历上的日期</translation>
    </message>
    <message>
        <source>%1 and not 长期</source>
        <translation>%1，也不是“长期”</translation>
    </message>
    <message>
        <source>is not a sex code; use 0, 1, 2 or 9</source>
        <translation>不是性别代码；应为 0、1、2 或 9</translation>
    </message>
    <message>
        <source>is not two digits</source>
        <translation>不是两位数字</translation>
    </message>
    <message>
        <source>is not a country code of three letters</source>
        <translation>不是三个字母的国家代码</translation>
    </message>
    <message>
        <source>holds something other than digits</source>
        <translation>含有数字以外的字符</translation>
    </message>
    <message>
        <source>holds a character outside UCS-2, which a card cannot store</source>
        <translation>含有 UCS-2 以外的字符，证件无法存储</translation>
    </message>
    <message>
        <source>holds the control character U+%1</source>
        <translation>含有控制字符 U+%1</translation>
    </message>
    <message>
        <source>must not be empty</source>
        <translation>不能为空</translation>
    </message>
    <message>
        <source>has %1 characters; a %2 card has room for %3</source>
        <translation>有 %1 个字符；%2 类证件最多容纳 %3 个</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>布尔值</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>数字</translation>
    </message>
    <message>
        <source>a text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>a list</source>
        <translation>列表</translation>
    </message>
    <message>
        <source>an object</source>
        <translation>对象</translation>
    </message>
    <message>
        <source>nothing</source>
        <translation>无</translation>
    </message>
    <message>
        <source>must be %1, not %2</source>
        <translation>应为%1，而不是%2</translation>
    </message>
    <message>
        <source>&quot;%1&quot;</source>
        <translation>“%1”</translation>
    </message>
    <message>
        <source>%1 is none of %2</source>
        <translation>%1不是下列之一：%2</translation>
    </message>
    <message>
        <source>%1 is not a whole number from 0 to %2</source>
        <translation>%1 不是从 0 到 %2 的整数</translation>
    </message>
    <message>
        <source>%1 is not the name of a file in the same folder</source>
        <translation>%1不是同一文件夹中的文件名</translation>
    </message>
    <message>
        <source>is not a known key; keys of a photo: delivery, file, seed</source>
        <translation>不是已知的键；照片的键有：delivery、file、seed</translation>
    </message>
    <message>
        <source>is missing</source>
        <translation>缺失</translation>
    </message>
    <message>
        <source>goes with the delivery &quot;file&quot; alone</source>
        <translation>只能与 delivery 的值“file”一起使用</translation>
    </message>
    <message>
        <source>a list of texts</source>
        <translation>文字的列表</translation>
    </message>
    <message>
        <source>must be a list of texts, not %1 in the list</source>
        <translation>应为文字的列表，列表中不能有%1</translation>
    </message>
    <message>
        <source>is not a key of a %1 card; its keys: %2</source>
        <translation>不是 %1 类证件的键；它的键有：%2</translation>
    </message>
    <message>
        <source>is missing; a %1 card needs it</source>
        <translation>缺失；%1 类证件必须有它</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>第 %1 行第 %2 列：%3</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>%1: %2: %3</source>
        <translation>%1：%2：%3</translation>
    </message>
    <message>
        <source>is larger than a description may be (%1 bytes)</source>
        <translation>超过了描述文件允许的大小（%1 字节）</translation>
    </message>
    <message>
        <source>is not a JSON object</source>
        <translation>不是 JSON 对象</translation>
    </message>
    <message>
        <source>environment variable %1: %2</source>
        <translation>环境变量 %1：%2</translation>
    </message>
    <message>
        <source>null</source>
        <translation>空值</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1%2</translation>
    </message>
    <message>
        <source>is neither a built-in card nor a file; &quot;idcard-reader cards&quot; lists the built-in cards</source>
        <translation>既不是内置证件，也不是文件；“idcard-reader cards”列出内置的证件</translation>
    </message>
</context>
<context>
    <name>Doctor</name>
    <message>
        <source>General</source>
        <translation>常规</translation>
    </message>
    <message>
        <source>Reading through the maker&apos;s library</source>
        <translation>通过厂商的库读卡</translation>
    </message>
    <message>
        <source>Reading over USB</source>
        <translation>通过 USB 读卡</translation>
    </message>
    <message>
        <source>Photos, by either road</source>
        <translation>照片（两种读卡方式）</translation>
    </message>
    <message>
        <source>Pictures of the card</source>
        <translation>证件图像</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>本库</translation>
    </message>
    <message>
        <source>Qt</source>
        <translation>Qt</translation>
    </message>
    <message>
        <source>Locale</source>
        <translation>区域设置</translation>
    </message>
    <message>
        <source>Maker&apos;s library</source>
        <translation>厂商的库</translation>
    </message>
    <message>
        <source>Reader</source>
        <translation>读卡器</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>权限</translation>
    </message>
    <message>
        <source>udev rule</source>
        <translation>udev 规则</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>用户组</translation>
    </message>
    <message>
        <source>Kernel driver</source>
        <translation>内核驱动</translation>
    </message>
    <message>
        <source>In use</source>
        <translation>占用</translation>
    </message>
    <message>
        <source>Photo decoder</source>
        <translation>照片解码库</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>屏幕</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>分辨率</translation>
    </message>
    <message>
        <source>JPEG</source>
        <translation>JPEG</translation>
    </message>
    <message>
        <source>Font of texts</source>
        <translation>文字字体</translation>
    </message>
    <message>
        <source>Font of number</source>
        <translation>号码字体</translation>
    </message>
    <message>
        <source>Install a font for it</source>
        <translation>请为其安装字体</translation>
    </message>
    <message>
        <source>Install a font for it and copy the project&apos;s fontconfig file 69-idcard-reader.conf to /etc/fonts/conf.d</source>
        <translation>请为其安装字体，并将本项目的 fontconfig 文件 69-idcard-reader.conf 复制到 /etc/fonts/conf.d</translation>
    </message>
    <message>
        <source>A font for it is installed, %1. Copy the project&apos;s fontconfig file 69-idcard-reader.conf to /etc/fonts/conf.d</source>
        <translation>已安装可用的字体 %1。请将本项目的 fontconfig 文件 69-idcard-reader.conf 复制到 /etc/fonts/conf.d</translation>
    </message>
    <message>
        <source>%1; it is in the project&apos;s sources, packaging/fonts</source>
        <translation>%1；该文件在本项目源代码的 packaging/fonts 中</translation>
    </message>
    <message>
        <source>%1 (docs/fonts.md), as root.</source>
        <translation>%1（见 docs/fonts.md），须以 root 身份。</translation>
    </message>
    <message>
        <source>%1 (docs/fonts.md), as root:</source>
        <translation>%1（见 docs/fonts.md），须以 root 身份：</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>%1: not known, since Qt does not come up (%2)</source>
        <translation>%1：无法得知，因为 Qt 没有启动（%2）</translation>
    </message>
    <message>
        <source>Do what &quot;Screen&quot; says and run this again.</source>
        <translation>请按“屏幕”一项的提示处理，然后重新运行。</translation>
    </message>
    <message>
        <source>%1: no font here has the Chinese characters; the pictures have empty boxes in their place</source>
        <translation>%1：本机没有含中文字符的字体；图像中的文字会变成空框</translation>
    </message>
    <message>
        <source>Install a Chinese font (docs/fonts.md), as root:</source>
        <translation>请以 root 身份安装中文字体（见 docs/fonts.md）：</translation>
    </message>
    <message>
        <source>%1 is installed</source>
        <translation>%1 已安装</translation>
    </message>
    <message>
        <source>%1: its stand-in %2</source>
        <translation>%1：使用替代字体 %2</translation>
    </message>
    <message>
        <source>%1, with Chinese characters of %2</source>
        <translation>%1，其中的中文字符取自 %2</translation>
    </message>
    <message>
        <source>%1: no stand-in is named, and Qt takes %2; characters may have another form or size than on the card</source>
        <translation>%1：没有指定替代字体，Qt 使用 %2；字形或大小可能与证件上的不同</translation>
    </message>
    <message>
        <source>libidcard_reader_lib.so is &quot;%1&quot;, idcard-reader is %2</source>
        <translation>libidcard_reader_lib.so 为“%1”，idcard-reader 为 %2</translation>
    </message>
    <message>
        <source>Install the library and the program of one version. This shows which library is taken:</source>
        <translation>请安装同一版本的库和程序。下面的命令显示所用的库：</translation>
    </message>
    <message>
        <source>%1, built with %2</source>
        <translation>%1，编译时为 %2</translation>
    </message>
    <message>
        <source>%1: they do not go together</source>
        <translation>%1：两者不兼容</translation>
    </message>
    <message>
        <source>Install Qt %1 or a later Qt %2, or build the library with the Qt that is here. This shows which Qt is taken:</source>
        <translation>请安装 Qt %1 或更新的 Qt %2，或用本机的 Qt 编译本库。下面的命令显示所用的 Qt：</translation>
    </message>
    <message>
        <source>This system has no locale &quot;%1&quot;; programs run in &quot;C&quot;, without Chinese characters</source>
        <translation>系统没有区域设置“%1”；程序在“C”下运行，不支持中文字符</translation>
    </message>
    <message>
        <source>Choose one that is there (locale -a shows them), for instance C.UTF-8, or have it made (Debian: package locales):</source>
        <translation>请选用已有的区域设置（locale -a 可列出），例如 C.UTF-8，或生成它（Debian：软件包 locales）：</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has the encoding %2, not UTF-8: a host application may garble Chinese texts and file names</source>
        <translation>“%1”的编码是 %2，不是 UTF-8：主程序可能弄乱中文文字和文件名</translation>
    </message>
    <message>
        <source>Start the host application in a UTF-8 locale, for instance:</source>
        <translation>请在 UTF-8 区域设置下启动主程序，例如：</translation>
    </message>
    <message>
        <source>Qt can write it</source>
        <translation>Qt 可以写入</translation>
    </message>
    <message>
        <source>Not known, since Qt does not come up (%1)</source>
        <translation>无法得知，因为 Qt 没有启动（%1）</translation>
    </message>
    <message>
        <source>Qt has no JPEG plug-in, imageformats/libqjpeg.so: all pictures come out empty; looked in %1</source>
        <translation>Qt 没有 JPEG 插件 imageformats/libqjpeg.so：所有图像都会是空的；已查找 %1</translation>
    </message>
    <message>
        <source>Install it, as root (Debian), or put the plug-in of your Qt in one of these folders:</source>
        <translation>请以 root 身份安装它（Debian），或将所用 Qt 的插件放入其中一个文件夹：</translation>
    </message>
    <message>
        <source>Qt&apos;s JPEG plug-in does not work, all pictures come out empty: %1</source>
        <translation>Qt 的 JPEG 插件不能工作，所有图像都会是空的：%1</translation>
    </message>
    <message>
        <source>Put the plug-in of the Qt that is running in its place, as root (Debian):</source>
        <translation>请以 root 身份换上正在运行的 Qt 的插件（Debian）：</translation>
    </message>
    <message>
        <source>no reason given</source>
        <translation>没有给出原因</translation>
    </message>
    <message>
        <source>%1 is for another processor: %2; this program is for %3</source>
        <translation>%1 用于其他处理器：%2；本程序用于 %3</translation>
    </message>
    <message>
        <source>Get the library for %1 from %2 and put it in this one&apos;s place.</source>
        <translation>请向%2索取用于 %1 的库，替换此文件。</translation>
    </message>
    <message>
        <source>%1 is cut off: its %2 bytes are fewer than its own headers say</source>
        <translation>%1 不完整：它只有 %2 字节，少于其文件头所声明的大小</translation>
    </message>
    <message>
        <source>Copy the file again from what %1 delivered and compare the two:</source>
        <translation>请用%1提供的文件重新复制，并比较两者：</translation>
    </message>
    <message>
        <source>%1 cannot be read by this user, or leads nowhere</source>
        <translation>当前用户无法读取 %1，或它是失效的链接</translation>
    </message>
    <message>
        <source>See where it leads, and let everybody read the file, as root:</source>
        <translation>请以 root 身份查看它指向何处，并让所有用户都能读取该文件：</translation>
    </message>
    <message>
        <source>%1 is not a library</source>
        <translation>%1 不是库文件</translation>
    </message>
    <message>
        <source>Put the file that %1 delivered in its place; what it is now:</source>
        <translation>请换上%1提供的文件；下面的命令显示它现在是什么：</translation>
    </message>
    <message>
        <source>%1 needs %2, which is not here</source>
        <translation>%1 需要 %2，而本机没有</translation>
    </message>
    <message>
        <source>Install what has %1; %2 knows what the library needs. All that is missing:</source>
        <translation>请安装含有 %1 的软件包；所需软件包可询问%2。下面的命令列出缺少的全部内容：</translation>
    </message>
    <message>
        <source>%1 cannot be loaded: %2</source>
        <translation>无法加载 %1：%2</translation>
    </message>
    <message>
        <source>Get a version of it for this system from %1; the loader&apos;s whole account:</source>
        <translation>请向%1索取适用于本系统的版本；下面的命令显示加载器的完整报告：</translation>
    </message>
    <message>
        <source>%1, %2, is not here; looked in %3 and in the loader&apos;s cache</source>
        <translation>没有找到%1（%2）；已查找 %3 和加载器的缓存</translation>
    </message>
    <message>
        <source>Put the file that %1 delivered, or a link to it, under this name beside libidcard_reader_lib.so, as root:</source>
        <translation>请以 root 身份将%1提供的文件或其链接以此名称放在 libidcard_reader_lib.so 旁边：</translation>
    </message>
    <message>
        <source>%1 has no function %2</source>
        <translation>%1 中没有函数 %2</translation>
    </message>
    <message>
        <source>It is another library, or another version, under this name. Put the one that %1 delivered in its place. What it has:</source>
        <translation>该名称下是另一个库或另一个版本。请换上%1提供的库。下面的命令列出它所含的函数：</translation>
    </message>
    <message>
        <source>Loading %1 crashes (%2), and with it every program that reads</source>
        <translation>加载 %1 时崩溃（%2），任何读卡的程序都会随之崩溃</translation>
    </message>
    <message>
        <source>Report this to %1 and get another version. Remove this one until then.</source>
        <translation>请将此情况告知%1并索取其他版本。在此之前请移走这个文件。</translation>
    </message>
    <message>
        <source>Loading %1 hangs, and with it every program that reads</source>
        <translation>加载 %1 时停止响应，任何读卡的程序都会随之停止响应</translation>
    </message>
    <message>
        <source>End other programs that use the reader and plug it in again. If it stays so, get another version from %1.</source>
        <translation>请退出正在使用读卡器的其他程序，并重新插拔读卡器。如果仍然如此，请向%1索取其他版本。</translation>
    </message>
    <message>
        <source>its functions are in the process already, from %1</source>
        <translation>其函数已在进程中，来自 %1</translation>
    </message>
    <message>
        <source>the reader&apos;s maker</source>
        <translation>读卡器厂商</translation>
    </message>
    <message>
        <source>the maker of the photo decoder</source>
        <translation>照片解码库的厂商</translation>
    </message>
    <message>
        <source>32-bit x86</source>
        <translation>32 位 x86</translation>
    </message>
    <message>
        <source>32-bit ARM</source>
        <translation>32 位 ARM</translation>
    </message>
    <message>
        <source>64-bit ARM</source>
        <translation>64 位 ARM</translation>
    </message>
    <message>
        <source>processor %1</source>
        <translation>处理器 %1</translation>
    </message>
    <message>
        <source>it hangs</source>
        <translation>停止响应</translation>
    </message>
    <message>
        <source>ok</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>FAILURE</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>All is fine: %1.
</source>
        <translation>一切正常：%1。
</translation>
    </message>
    <message>
        <source>%1 check</source>
        <translation>%1 项检查</translation>
    </message>
    <message>
        <source>%1 checks</source>
        <translation>%1 项检查</translation>
    </message>
    <message>
        <source>%1, %2, %3 fine.</source>
        <translation>%1，%2，%3 项正常。</translation>
    </message>
    <message>
        <source>%1 failure</source>
        <translation>%1 项失败</translation>
    </message>
    <message>
        <source>%1 failures</source>
        <translation>%1 项失败</translation>
    </message>
    <message>
        <source>%1 warning</source>
        <translation>%1 项警告</translation>
    </message>
    <message>
        <source>%1 warnings</source>
        <translation>%1 项警告</translation>
    </message>
    <message>
        <source> A counter needs one road only; --road library or --road usb leaves the other out.</source>
        <translation>柜台只需要一种读卡方式；--road library 或 --road usb 可略去另一种。</translation>
    </message>
    <message>
        <source>Run this on the counter, in the session of its desktop, where DISPLAY or WAYLAND_DISPLAY is set. Without any display, choose Qt&apos;s offscreen platform:</source>
        <translation>请在柜台电脑的桌面会话中运行，那里设置了 DISPLAY 或 WAYLAND_DISPLAY。没有显示服务时，请选用 Qt 的 offscreen 平台：</translation>
    </message>
    <message>
        <source>its own choice of platform</source>
        <translation>自行选择的平台</translation>
    </message>
    <message>
        <source>the platform &quot;%1&quot;</source>
        <translation>平台“%1”</translation>
    </message>
    <message>
        <source>Qt does not come up with %1: %2; a program that reads ends there</source>
        <translation>Qt 无法以%1启动：%2；读卡的程序会在此处退出</translation>
    </message>
    <message>
        <source>Qt has no screen on the platform &quot;%1&quot;: no picture can be painted</source>
        <translation>Qt 在平台“%1”上没有屏幕：无法绘制图像</translation>
    </message>
    <message>
        <source>Connect a screen and switch it on, or let Qt do without:</source>
        <translation>请连接屏幕并打开，或让 Qt 不使用屏幕：</translation>
    </message>
    <message>
        <source>There is no display. idcard-reader chooses Qt&apos;s platform &quot;offscreen&quot; by itself; a host application does not come up</source>
        <translation>没有显示服务。idcard-reader 会自行选用 Qt 的平台“offscreen”；主程序则无法启动</translation>
    </message>
    <message>
        <source>%1 pixels on the platform &quot;%2&quot;</source>
        <translation>%1 像素，平台“%2”</translation>
    </message>
    <message>
        <source>%1 dpi (%2 x %3 mm)</source>
        <translation>%1 dpi（%2 x %3 毫米）</translation>
    </message>
    <message>
        <source>a resident card is painted with %1 pixels</source>
        <translation>居民身份证的图像为 %1 像素</translation>
    </message>
    <message>
        <source>Virtual machines, projectors and adapters often report a wrong size. Correct it in their settings or in those of the desktop. What X11 knows about the screen:</source>
        <translation>虚拟机、投影仪和转接器常常报告错误的尺寸。请在它们或桌面的设置中更正。下面的命令显示 X11 所知的屏幕信息：</translation>
    </message>
    <message>
        <source>The screen claims %1, which is unusual; %2</source>
        <translation>屏幕报告 %1，这不常见；%2</translation>
    </message>
    <message>
        <source>The screen claims different resolutions across and down, %1; pictures go by the first: %2</source>
        <translation>屏幕报告的横向和纵向分辨率不同，%1；图像以前者为准：%2</translation>
    </message>
    <message>
        <source>The screen claims %1, which no screen has; %2</source>
        <translation>屏幕报告 %1，没有屏幕会是这样；%2</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1；%2</translation>
    </message>
    <message>
        <source>%1 is not there: the device has no node</source>
        <translation>%1 不存在：该设备没有节点</translation>
    </message>
    <message>
        <source>Plug the reader in again. In a container, pass /dev/bus/usb through.</source>
        <translation>请重新插拔读卡器。在容器中运行时，请将 /dev/bus/usb 传入容器。</translation>
    </message>
    <message>
        <source>%1: mode %2, owner %3, group %4%5</source>
        <translation>%1：模式 %2，所有者 %3，组 %4%5</translation>
    </message>
    <message>
        <source>, with an access list</source>
        <translation>，带有访问控制列表</translation>
    </message>
    <message>
        <source>This user may not open %1</source>
        <translation>当前用户无权打开 %1</translation>
    </message>
    <message>
        <source>If this device is the reader, open it to the user at the machine and to those of the group, as root:</source>
        <translation>如果该设备是读卡器，请以 root 身份把它开放给在本机前登录的用户和该组的用户：</translation>
    </message>
    <message>
        <source>%1; root may open it whatever that is</source>
        <translation>%1；无论如何 root 都可以打开</translation>
    </message>
    <message>
        <source>There is no group &quot;%1&quot;, to which the rule gives the reader</source>
        <translation>没有用户组“%1”，而规则把读卡器开放给该组</translation>
    </message>
    <message>
        <source>Make it, as root:</source>
        <translation>请以 root 身份建立它：</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is there; root needs none</source>
        <translation>“%1”存在；root 不需要用户组</translation>
    </message>
    <message>
        <source>%1 is in &quot;%2&quot;</source>
        <translation>%1 属于“%2”</translation>
    </message>
    <message>
        <source>%1 is in &quot;%2&quot;, but has not logged in since then</source>
        <translation>%1 属于“%2”，但加入后还没有重新登录</translation>
    </message>
    <message>
        <source>Log out of the whole desktop session and in again, or restart the machine. To try it in this terminal:</source>
        <translation>请注销整个桌面会话后重新登录，或重新启动电脑。要在此终端中试用：</translation>
    </message>
    <message>
        <source>%1 is not in &quot;%2&quot;</source>
        <translation>%1 不属于“%2”</translation>
    </message>
    <message>
        <source>%1 and need not be: the reader is open to them</source>
        <translation>%1，也不需要：读卡器已开放给该用户</translation>
    </message>
    <message>
        <source>The user at the machine needs no group. For others, as root, then log in again:</source>
        <translation>在本机前登录的用户不需要加入用户组。其他用户请以 root 身份加入，然后重新登录：</translation>
    </message>
    <message>
        <source>%1 (process %2)</source>
        <translation>%1（进程 %2）</translation>
    </message>
    <message>
        <source>; %1 processes of others cannot be seen by this user, root sees them</source>
        <translation>；另有其他用户的 %1 个进程，当前用户看不到，root 可以看到</translation>
    </message>
    <message>
        <source>By no program%1</source>
        <translation>没有被程序占用%1</translation>
    </message>
    <message>
        <source>a program that this user cannot see</source>
        <translation>当前用户看不到的程序</translation>
    </message>
    <message>
        <source>The reader is held by %1%2</source>
        <translation>读卡器被占用：%1%2</translation>
    </message>
    <message>
        <source>The reader&apos;s node is open in %1%2</source>
        <translation>读卡器的节点已被打开：%1%2</translation>
    </message>
    <message>
        <source>One program at a time can use a reader: end the other one first. Which it is, as root:</source>
        <translation>一个读卡器同时只能由一个程序使用：请先退出另一个程序。以 root 身份可查出是哪个程序：</translation>
    </message>
    <message>
        <source>the bus is empty, but perhaps for hubs</source>
        <translation>总线上没有设备（集线器除外）</translation>
    </message>
    <message>
        <source>%1 other devices are there</source>
        <translation>另有 %1 个其他设备</translation>
    </message>
    <message>
        <source>%1 is not on the USB bus</source>
        <translation>USB 总线上没有 %1</translation>
    </message>
    <message>
        <source>No device on the USB bus could be a reader</source>
        <translation>USB 总线上没有可能是读卡器的设备</translation>
    </message>
    <message>
        <source>Plug the reader in, straight into the computer, and see that it has power. A container or virtual machine has only the devices that are passed through. What is there:</source>
        <translation>请把读卡器直接插到计算机上，并确认它已通电。容器或虚拟机中只有传入的设备。下面的命令列出已有的设备：</translation>
    </message>
    <message>
        <source>%1 at %2, %3</source>
        <translation>%1，位于 %2，%3</translation>
    </message>
    <message>
        <source>%1 at %2 %3</source>
        <translation>%1，位于 %2%3</translation>
    </message>
    <message>
        <source>%1: it has not the pipes of a reader that this library knows</source>
        <translation>%1：它没有本库所知的读卡器端点</translation>
    </message>
    <message>
        <source>See whether these ids are those of the reader. One with other pipes is read through its maker&apos;s library alone:</source>
        <translation>请确认该标识是读卡器的标识。端点不同的读卡器只能通过厂商的库读卡：</translation>
    </message>
    <message>
        <source>None is bound</source>
        <translation>没有绑定驱动</translation>
    </message>
    <message>
        <source>None but that of a program (usbfs)</source>
        <translation>只有程序使用的驱动（usbfs）</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is bound to the reader; every read detaches it from the reader and attaches it again</source>
        <translation>读卡器绑定了“%1”；每次读卡都会使其与读卡器分离，然后重新绑定</translation>
    </message>
    <message>
        <source>If reading fails with USB_READER_CLAIM_FAILED, keep the driver from it, as root, and plug the reader in again:</source>
        <translation>如果读卡失败并给出 USB_READER_CLAIM_FAILED，请以 root 身份禁用该驱动，并重新插拔读卡器：</translation>
    </message>
    <message>
        <source>; this user may use the reader anyway, others may not</source>
        <translation>；当前用户仍可使用读卡器，其他用户则不能</translation>
    </message>
    <message>
        <source>Plug the reader in, then open it, as root:</source>
        <translation>请插好读卡器，然后以 root 身份开放它：</translation>
    </message>
    <message>
        <source>If this device is the reader, open it, as root:</source>
        <translation>如果该设备是读卡器，请以 root 身份开放它：</translation>
    </message>
    <message>
        <source>The file %1 is in none of udev&apos;s folders</source>
        <translation>udev 的文件夹中没有文件 %1</translation>
    </message>
    <message>
        <source>%1 is empty or a link to /dev/null, by which the rule is switched off%2</source>
        <translation>%1 是空文件或指向 /dev/null 的链接，规则因此停用%2</translation>
    </message>
    <message>
        <source>Take it away, so that the file of the package counts, as root:</source>
        <translation>请以 root 身份移走它，使软件包中的文件生效：</translation>
    </message>
    <message>
        <source>no device</source>
        <translation>无设备</translation>
    </message>
    <message>
        <source>%1 is for %2, not for %3</source>
        <translation>%1 用于 %2，而不是 %3</translation>
    </message>
    <message>
        <source>%1 opens no device: it has no ids of four digits in lower case</source>
        <translation>%1 没有开放任何设备：其中没有小写的四位标识</translation>
    </message>
    <message>
        <source>%1 is for %2, but has not been applied: the node is not of the group %3</source>
        <translation>%1 用于 %2，但还没有生效：节点不属于组 %3</translation>
    </message>
    <message>
        <source>Load it, then plug the reader in again, as root:</source>
        <translation>请以 root 身份加载它，然后重新插拔读卡器：</translation>
    </message>
    <message>
        <source>%1, for %2</source>
        <translation>%1，用于 %2</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>配置文件</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>no setting</source>
        <translation>没有设置</translation>
    </message>
    <message>
        <source> and no </source>
        <translation>，也没有 </translation>
    </message>
    <message>
        <source>No %1</source>
        <translation>没有 %1</translation>
    </message>
    <message>
        <source>; </source>
        <translation>；</translation>
    </message>
    <message>
        <source>Web pages</source>
        <translation>网页</translation>
    </message>
    <message>
        <source>Sites</source>
        <translation>网站</translation>
    </message>
    <message>
        <source>Let it be written again, as root:</source>
        <translation>请以 root 身份重新写入：</translation>
    </message>
    <message>
        <source>Correct the list; until then no page reads a card.</source>
        <translation>请更正列表；在此之前，任何网页都不能读卡。</translation>
    </message>
    <message>
        <source>No site may read cards</source>
        <translation>没有网站可以读卡</translation>
    </message>
    <message>
        <source>%1 names %2, which cannot be started</source>
        <translation>%1 中指定的 %2 无法启动</translation>
    </message>
    <message>
        <source>Install idcard-reader-browser again.</source>
        <translation>请重新安装 idcard-reader-browser。</translation>
    </message>
    <message>
        <source>; the last answer, at %1, was %2 for %3</source>
        <translation>；最近一次回答：%1，%2，给 %3</translation>
    </message>
    <message>
        <source>Reading through the D-Bus service</source>
        <translation>通过 D-Bus 服务读卡</translation>
    </message>
    <message>
        <source>Service</source>
        <translation>服务</translation>
    </message>
    <message>
        <source>a card was read through it</source>
        <translation>已通过它读到证件</translation>
    </message>
    <message>
        <source>it reaches the reader, on which no card lies</source>
        <translation>它能访问读卡器，读卡器上没有证件</translation>
    </message>
    <message>
        <source>another program is reading through it</source>
        <translation>另一个程序正在通过它读卡</translation>
    </message>
    <message>
        <source>End the other program and look again.</source>
        <translation>请结束另一个程序后再检查。</translation>
    </message>
    <message>
        <source>it is not installed</source>
        <translation>未安装</translation>
    </message>
    <message>
        <source>Install it (Debian: idcard-reader-service).</source>
        <translation>请安装（Debian：idcard-reader-service）。</translation>
    </message>
    <message>
        <source>polkit does not let this user read cards through it: %1</source>
        <translation>polkit 不允许该用户通过它读卡：%1</translation>
    </message>
    <message>
        <source>Try from a session at the machine, or let the account in with a rule, as docs/service.md has one.</source>
        <translation>请在本机前的会话中再试，或者用一条规则允许该账户，规则见 docs/service.md。</translation>
    </message>
    <message>
        <source>it does not answer: %1</source>
        <translation>没有应答：%1</translation>
    </message>
    <message>
        <source>See what it says:</source>
        <translation>请查看它的输出：</translation>
    </message>
    <message>
        <source>neither it nor idcard-reader reads: %1, %2</source>
        <translation>它和 idcard-reader 都不能读卡：%1，%2</translation>
    </message>
    <message>
        <source>Make a read without it work first:</source>
        <translation>请先让不经过它的读取成功：</translation>
    </message>
    <message>
        <source>idcard-reader reads, but the service does not: %1, %2</source>
        <translation>idcard-reader 能读卡，但服务不能：%1，%2</translation>
    </message>
    <message>
        <source>What confines the service keeps the maker&apos;s library from something. Give that back, as docs/service.md shows, with:</source>
        <translation>对服务的限制使厂商的库缺少某种权限。请按 docs/service.md 所示，用以下命令放开：</translation>
    </message>
    <message>
        <source>no answer came in time</source>
        <translation>未及时得到应答</translation>
    </message>
    <message>
        <source>%1 lacks %2</source>
        <translation>%1 缺少 %2</translation>
    </message>
    <message>
        <source>Sites may read cards, but no browser has the extension</source>
        <translation>有网站可以读卡，但没有浏览器装有扩展程序</translation>
    </message>
    <message>
        <source>Let it be installed, as root:</source>
        <translation>请以 root 身份安装：</translation>
    </message>
    <message>
        <source>The reader maker&apos;s library</source>
        <translation>读卡器厂商的库</translation>
    </message>
    <message>
        <source>The photo decoder</source>
        <translation>照片解码库</translation>
    </message>
    <message>
        <source>%1: Qt&apos;s platform &quot;minimal&quot; knows no fonts, installed or not; the pictures have empty boxes in place of the characters</source>
        <translation>%1：Qt 平台“minimal”不提供任何字体，无论是否已安装；图像中的文字会变成空框</translation>
    </message>
    <message>
        <source>Choose Qt&apos;s offscreen platform in its place:</source>
        <translation>请改用 Qt 的 offscreen 平台：</translation>
    </message>
    <message>
        <source>no process could be started: %1</source>
        <translation>无法启动进程：%1</translation>
    </message>
    <message>
        <source>it ended the program with the status %1</source>
        <translation>它以状态 %1 结束了程序</translation>
    </message>
    <message>
        <source>signal %1, %2</source>
        <translation>信号 %1，%2</translation>
    </message>
    <message>
        <source>No browser&apos;s extension was made for %1</source>
        <translation>没有浏览器的扩展程序是为 %1 制作的</translation>
    </message>
    <message>
        <source>Let the extensions be made again, as root:</source>
        <translation>请以 root 身份重新制作扩展程序：</translation>
    </message>
</context>
<context>
    <name>Faults</name>
    <message>
        <source>opening the reader answers N (not 144)</source>
        <translation>打开读卡器返回 N（不能是 144）</translation>
    </message>
    <message>
        <source>the reader&apos;s node cannot be opened, whatever N; not for want of permission</source>
        <translation>无法打开读卡器的设备节点，与 N 的值无关；原因不是缺少权限</translation>
    </message>
    <message>
        <source>the first N finds, or all, see no card</source>
        <translation>前 N 次寻卡或每次寻卡都找不到证件</translation>
    </message>
    <message>
        <source>the first N lookups, or all, answer status 00 00 80</source>
        <translation>前 N 次寻卡或每次寻卡都应答状态 00 00 80</translation>
    </message>
    <message>
        <source>the first N reads answer 65 (try again)</source>
        <translation>前 N 次读卡返回 65（请重试）</translation>
    </message>
    <message>
        <source>the first N reads answer a status alone</source>
        <translation>前 N 次读卡只应答状态</translation>
    </message>
    <message>
        <source>reading answers N (not 144 or 65)</source>
        <translation>读卡返回 N（不能是 144 或 65）</translation>
    </message>
    <message>
        <source>every read answers a status alone, whatever N</source>
        <translation>每次读卡都只应答状态，与 N 的值无关</translation>
    </message>
    <message>
        <source>a read answers after N milliseconds (0 to 60000)</source>
        <translation>读卡在 N 毫秒后才返回（0 至 60000）</translation>
    </message>
    <message>
        <source>the photo is compressed data that does not decode</source>
        <translation>照片是无法解码的压缩数据</translation>
    </message>
    <message>
        <source>N bytes of photo are reported (0 to 38862)</source>
        <translation>报告照片有 N 字节（0 至 38862）</translation>
    </message>
    <message>
        <source>the photo length field reads N; the photo stays 1024 bytes long</source>
        <translation>照片长度字段为 N；照片仍为 1024 字节</translation>
    </message>
    <message>
        <source>the card is of kind N (not 1 to 4; 9 if not given)</source>
        <translation>证件种类为 N（不能是 1 至 4；不指定时为 9）</translation>
    </message>
    <message>
        <source>the text has a kind letter that no document has, whatever N</source>
        <translation>文字中的种类字母不属于任何证件，与 N 的值无关</translation>
    </message>
    <message>
        <source>the card goes between being found and being read</source>
        <translation>找到证件之后、读取之前，证件被取走</translation>
    </message>
    <message>
        <source>the card goes between being selected and being read</source>
        <translation>选中证件之后、读取之前，证件被取走</translation>
    </message>
    <message>
        <source>the reader is not there</source>
        <translation>没有接入读卡器</translation>
    </message>
    <message>
        <source>the reader goes before transfer N of a card read (1 to 6)</source>
        <translation>读一次卡的第 N 次传输之前，读卡器被拔出（1 至 6）</translation>
    </message>
    <message>
        <source>the reader goes in the middle of transfer N (1 to 6)</source>
        <translation>第 N 次传输中途，读卡器被拔出（1 至 6）</translation>
    </message>
    <message>
        <source>this user may not open the reader&apos;s node</source>
        <translation>当前用户无权打开读卡器的设备节点</translation>
    </message>
    <message>
        <source>another program holds the reader&apos;s interface</source>
        <translation>读卡器的接口被其他程序占用</translation>
    </message>
    <message>
        <source>the reader cannot be reset</source>
        <translation>无法复位读卡器</translation>
    </message>
    <message>
        <source>other bytes come, two hexadecimal digits each, at most 4096</source>
        <translation>应答改为这些字节，每字节两位十六进制数字，最多 4096 字节</translation>
    </message>
    <message>
        <source>only the first N bytes of the answer come (0 to 4095)</source>
        <translation>只给出应答的前 N 字节（0 至 4095）</translation>
    </message>
    <message>
        <source>the bits of the answer&apos;s byte at offset N come inverted (0 to 4095)</source>
        <translation>应答中偏移量为 N 的字节各位取反（0 至 4095）</translation>
    </message>
    <message>
        <source>the answer comes after N milliseconds (0 to 60000)</source>
        <translation>N 毫秒后才应答（0 至 60000）</translation>
    </message>
    <message>
        <source>the answer never comes</source>
        <translation>始终没有应答</translation>
    </message>
    <message>
        <source>the endpoint stalls instead of answering</source>
        <translation>端点停止（stall），不应答</translation>
    </message>
    <message>
        <source>the answer is garbled on the bus</source>
        <translation>应答在总线上损坏</translation>
    </message>
    <message>
        <source>more comes than the host asks for</source>
        <translation>应答比主机要求的长</translation>
    </message>
    <message>
        <source>the endpoint stalls instead of taking the command</source>
        <translation>端点停止（stall），不接收命令</translation>
    </message>
    <message>
        <source>the command is garbled on the bus</source>
        <translation>命令在总线上损坏</translation>
    </message>
    <message>
        <source>only the first N bytes of the command are taken (0 to 9)</source>
        <translation>只接收命令的前 N 字节（0 至 9）</translation>
    </message>
    <message>
        <source>the command is never taken</source>
        <translation>始终不接收命令</translation>
    </message>
    <message>
        <source>the command is taken after N milliseconds (0 to 60000)</source>
        <translation>N 毫秒后才接收命令（0 至 60000）</translation>
    </message>
    <message>
        <source>%1 or %1=N</source>
        <translation>%1 或 %1=N</translation>
    </message>
    <message>
        <source>fault &quot;%1&quot; is not known; did you mean %2?</source>
        <translation>故障“%1”无法识别；您是不是要用 %2？</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>fault &quot;%1&quot; is not of the form %2: %3</source>
        <translation>故障“%1”不符合 %2 的形式：%3</translation>
    </message>
    <message>
        <source>the reader maker&apos;s library</source>
        <translation>读卡器厂商的库</translation>
    </message>
    <message>
        <source>&quot;idcard-reader read --simulate&quot;</source>
        <translation>“idcard-reader read --simulate”</translation>
    </message>
    <message>
        <source>the reader on USB</source>
        <translation>使用 USB 的读卡器</translation>
    </message>
    <message>
        <source>%1 has no fault &quot;%2&quot;; only %3 has it: use %4</source>
        <translation>%1没有故障“%2”；只有%3才有：请使用 %4</translation>
    </message>
    <message>
        <source>fault &quot;%1&quot; is given twice</source>
        <translation>故障“%1”给出了两次</translation>
    </message>
    <message>
        <source>every Nth opening answers 210, as if the reader had gone</source>
        <translation>每第 N 次打开读卡器返回 210，如同读卡器已断开</translation>
    </message>
    <message>
        <source>&quot;%1&quot; lists those of %2</source>
        <translation>“%1”列出%2的故障</translation>
    </message>
    <message>
        <source>fault &quot;%1&quot; is not known; %2</source>
        <translation>故障“%1”无法识别；%2</translation>
    </message>
</context>
<context>
    <name>Files</name>
    <message>
        <source>The folder %1 could not be made: %2. Choose another folder.</source>
        <translation>无法建立文件夹 %1：%2。请另选一个文件夹。</translation>
    </message>
    <message>
        <source>The file %1 could not be written: %2. Free space, see who may write there, or choose another folder.</source>
        <translation>无法写入文件 %1：%2。请腾出磁盘空间、检查写入权限，或另选一个文件夹。</translation>
    </message>
    <message>
        <source>The file %1 could not be removed: %2. Remove it.</source>
        <translation>无法删除文件 %1：%2。请自行删除。</translation>
    </message>
    <message>
        <source>The earlier file %1 is now %2: %3. Rename it.</source>
        <translation>原来的文件 %1 现在名为 %2：%3。请将其改回原名。</translation>
    </message>
    <message>
        <source>%1 is not a folder. Choose another folder.</source>
        <translation>%1 不是文件夹。请另选一个文件夹。</translation>
    </message>
    <message>
        <source>%1 is a folder, where a file must be written. Choose another folder.</source>
        <translation>%1 是文件夹，而这里须写入文件。请另选一个文件夹。</translation>
    </message>
    <message>
        <source>The folder %1 already holds %2, and nothing is overwritten. Choose another folder, or replace the card in it with --force.</source>
        <translation>文件夹 %1 中已有 %2，不会覆盖任何文件。请另选一个文件夹，或用 --force 替换其中的证件。</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>The folder %1 could not be made: %2.</source>
        <translation>无法建立文件夹 %1：%2。</translation>
    </message>
    <message>
        <source>Another program has locked the folder %1. Wait until it has ended, or choose another folder.</source>
        <translation>文件夹 %1 已被另一个程序锁定。请等它结束，或另选一个文件夹。</translation>
    </message>
</context>
<context>
    <name>History</name>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
</context>
<context>
    <name>Messages</name>
    <message>
        <source>Code: %1 (%2)</source>
        <translation>代码：%1（%2）</translation>
    </message>
    <message>
        <source>Cause: %1</source>
        <translation>原因：%1</translation>
    </message>
    <message>
        <source>What to do: %1</source>
        <translation>处理办法：%1</translation>
    </message>
    <message>
        <source>Device: %1</source>
        <translation>设备：%1</translation>
    </message>
    <message>
        <source>The library returned the code %1, which this program does not know. Install the program and the library of the same version.</source>
        <translation>库返回了本程序不认识的代码 %1。请安装同一版本的程序和库。</translation>
    </message>
    <message>
        <source>&quot;idcard-reader doctor&quot; says more about this machine.</source>
        <translation>运行“idcard-reader doctor”可进一步检查本机。</translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation>%1，位于 %2</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1%2</translation>
    </message>
    <message>
        <source>The card&apos;s text could not be decoded: the sex code of a foreigner&apos;s card must be 0, 1, 2 or 9. Read the card once more.</source>
        <translation>无法解码证件的文字：外国人永久居留身份证的性别代码应为 0、1、2 或 9。请再读一次卡。</translation>
    </message>
</context>
<context>
    <name>PrivateFile</name>
    <message>
        <source>The file %1 could not be written: %2. Free space, see who may write there, or choose another folder.</source>
        <translation>无法写入文件 %1：%2。请腾出磁盘空间、检查写入权限，或另选一个文件夹。</translation>
    </message>
</context>
<context>
    <name>Process</name>
    <message>
        <source>The reading in progress was broken off. If the reader does not answer any more, unplug it and plug it in again.</source>
        <translation>正在进行的读卡已中断。如果读卡器不再应答，请重新插拔读卡器。</translation>
    </message>
    <message>
        <source>Qt could not start. If there is no display here, unset DISPLAY and WAYLAND_DISPLAY or set QT_QPA_PLATFORM=offscreen.</source>
        <translation>Qt 无法启动。如果这里没有显示服务，请取消 DISPLAY 和 WAYLAND_DISPLAY 的设置，或设置 QT_QPA_PLATFORM=offscreen。</translation>
    </message>
    <message>
        <source>Standard output could not be written: %1. See that the file or the program it goes to can take it all, and start again.</source>
        <translation>无法写入标准输出：%1。请确认接收输出的文件或程序能够收下全部内容，然后重新运行。</translation>
    </message>
    <message>
        <source>%1 could not be started: %2.</source>
        <translation>无法启动 %1：%2。</translation>
    </message>
    <message>
        <source>It was ended by signal %1.</source>
        <translation>进程被信号 %1 终止。</translation>
    </message>
    <message>
        <source>It ended with status %1.</source>
        <translation>进程已结束，状态为 %1。</translation>
    </message>
</context>
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>“%1”之后缺少值。</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>“%1”之后不应有值。</translation>
    </message>
</context>
<context>
    <name>QIODevice</name>
    <message>
        <source>file to open is a directory</source>
        <translation>要打开的文件是文件夹</translation>
    </message>
</context>
<context>
    <name>QJsonParseError</name>
    <message>
        <source>garbage at the end of the document</source>
        <translation>文档末尾有多余的内容</translation>
    </message>
    <message>
        <source>illegal number</source>
        <translation>数字不合法</translation>
    </message>
    <message>
        <source>illegal value</source>
        <translation>值不合法</translation>
    </message>
    <message>
        <source>invalid escape sequence</source>
        <translation>转义序列无效</translation>
    </message>
    <message>
        <source>invalid termination by number</source>
        <translation>不能以数字结尾</translation>
    </message>
    <message>
        <source>invalid UTF8 string</source>
        <translation>UTF-8 文字无效</translation>
    </message>
    <message>
        <source>missing name separator</source>
        <translation>缺少名称之后的分隔符</translation>
    </message>
    <message>
        <source>missing value separator</source>
        <translation>缺少值之间的分隔符</translation>
    </message>
    <message>
        <source>object is missing after a comma</source>
        <translation>逗号之后缺少对象</translation>
    </message>
    <message>
        <source>too deeply nested document</source>
        <translation>文档嵌套过深</translation>
    </message>
    <message>
        <source>too large document</source>
        <translation>文档过大</translation>
    </message>
    <message>
        <source>unterminated array</source>
        <translation>数组没有结束</translation>
    </message>
    <message>
        <source>unterminated object</source>
        <translation>对象没有结束</translation>
    </message>
    <message>
        <source>unterminated string</source>
        <translation>字符串没有结束</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
</context>
<context>
    <name>Record</name>
    <message>
        <source>at offset %1 (%2) it has %3, where %4 was expected.</source>
        <translation>偏移 %1 处（%2）为 %3，应为 %4。</translation>
    </message>
    <message>
        <source> or </source>
        <translation> 或 </translation>
    </message>
    <message>
        <source>preamble</source>
        <translation>帧头</translation>
    </message>
    <message>
        <source>status</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>length of the text</source>
        <translation>文字长度</translation>
    </message>
    <message>
        <source>length of the photo</source>
        <translation>照片长度</translation>
    </message>
    <message>
        <source>number of bytes that follow it</source>
        <translation>后续字节数</translation>
    </message>
    <message>
        <source>length of the fingerprints</source>
        <translation>指纹长度</translation>
    </message>
    <message>
        <source>it goes on at offset %1, where a record of %2 bytes has ended.</source>
        <translation>它在偏移 %1 处仍有数据，而 %2 字节的记录在此处已经结束。</translation>
    </message>
    <message>
        <source>it ends at offset %1, where a record of %2 bytes does not.</source>
        <translation>它在偏移 %1 处结束，而 %2 字节的记录不在此处结束。</translation>
    </message>
    <message>
        <source>at offset %1 (length of the fingerprints) it has %2, where %3 was expected; its size decides.</source>
        <translation>偏移 %1 处（指纹长度）为 %2，应为 %3；以记录的大小为准。</translation>
    </message>
    <message>
        <source>at offset %1 (checksum) it has %2, where %3 was expected; something in it is not as the reader sent it.</source>
        <translation>偏移 %1 处（校验和）为 %2，应为 %3；其中有的内容与读卡器发出的不同。</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
</context>
<context>
    <name>Results</name>
    <message>
        <source>Fix the program: it must pass seven pointers, though only one record is filled.</source>
        <translation>请修改程序：虽然只会填写一条记录，七个指针都必须传入。</translation>
    </message>
    <message>
        <source>The card was read.</source>
        <translation>读卡成功。</translation>
    </message>
    <message>
        <source>The reader delivered a card of one of the four kinds.</source>
        <translation>读卡器给出了四类证件之一。</translation>
    </message>
    <message>
        <source>Nothing needs to be done.</source>
        <translation>无需处理。</translation>
    </message>
    <message>
        <source>The call succeeded, but nothing was read.</source>
        <translation>调用成功，但没有读到证件。</translation>
    </message>
    <message>
        <source>The reader reported a kind of card that this library does not name, or ended the read with an unexpected code.</source>
        <translation>读卡器报告了本库不认识的证件种类，或以意外的代码结束了读卡。</translation>
    </message>
    <message>
        <source>Lay the card flat on the reader, keep it still and read once more. Only resident identity cards, residence permits for Hong Kong, Macao and Taiwan residents and foreigners&apos; permanent residence cards can be read.</source>
        <translation>请将证件平放在读卡器上，不要移动，再读一次。只能读取居民身份证、港澳台居民居住证和外国人永久居留身份证。</translation>
    </message>
    <message>
        <source>The reader could not be opened.</source>
        <translation>无法打开读卡器。</translation>
    </message>
    <message>
        <source>No reader is connected, this user may not use it, another program holds it, or the reader maker&apos;s library was not found or failed while it opened the reader. A reader that answers the read itself with 1 gives this code as well.</source>
        <translation>没有连接读卡器，当前用户无权使用，读卡器被其他程序占用，或者没有找到读卡器厂商的库，或该库在打开读卡器时出错。读卡时返回 1 的读卡器也会得到这个代码。</translation>
    </message>
    <message>
        <source>Plug the reader in, end other programs that use it, check the access rights of its device, and see that the reader maker&apos;s library is beside libidcard_reader_lib.so or where the loader looks for libraries.</source>
        <translation>请插好读卡器，退出正在使用它的其他程序，检查设备的访问权限，并确认读卡器厂商的库与 libidcard_reader_lib.so 在同一文件夹，或位于加载器查找库的位置。</translation>
    </message>
    <message>
        <source>Reading the card was broken off.</source>
        <translation>读卡中断。</translation>
    </message>
    <message>
        <source>The reader maker&apos;s library failed while it read, or memory ran out.</source>
        <translation>读卡器厂商的库在读卡时出错，或内存不足。</translation>
    </message>
    <message>
        <source>Lay the card on the reader again and read once more; if it happens again, unplug the reader, plug it in and see that the computer has free memory.</source>
        <translation>请重新放好证件再读一次；如果仍然出现，请重新插拔读卡器，并确认计算机有空闲内存。</translation>
    </message>
    <message>
        <source>No card was found on the reader.</source>
        <translation>读卡器上没有找到证件。</translation>
    </message>
    <message>
        <source>No card lies on the reader, it lies beside the antenna, it is not a card that the reader knows, or the reader maker&apos;s library failed while it looked for a card.</source>
        <translation>读卡器上没有证件，证件偏离了感应区，读卡器不认识该证件，或读卡器厂商的库在寻卡时出错。</translation>
    </message>
    <message>
        <source>Lay the card flat on the middle of the reader, take other cards away and read once more.</source>
        <translation>请将证件平放在读卡器中央，移开其他卡片，再读一次。</translation>
    </message>
    <message>
        <source>The photo of the card could not be decoded.</source>
        <translation>无法解码证件照片。</translation>
    </message>
    <message>
        <source>The card delivered its photo compressed, and the photo decoder was not found, failed, or refused the data.</source>
        <translation>证件给出的是压缩的照片，而照片解码库没有找到、出错或拒绝了数据。</translation>
    </message>
    <message>
        <source>See that the photo decoder&apos;s library is beside libidcard_reader_lib.so or where the loader looks for libraries; if it does, read the card once more.</source>
        <translation>请确认照片解码库与 libidcard_reader_lib.so 在同一文件夹，或位于加载器查找库的位置；如果已经如此，请再读一次。</translation>
    </message>
    <message>
        <source>The program passed no place for the kind of card.</source>
        <translation>程序没有传入存放证件种类的位置。</translation>
    </message>
    <message>
        <source>The argument cardKind is null.</source>
        <translation>参数 cardKind 为空。</translation>
    </message>
    <message>
        <source>The program passed no record for resident identity cards.</source>
        <translation>程序没有传入居民身份证的记录。</translation>
    </message>
    <message>
        <source>The argument cn is null.</source>
        <translation>参数 cn 为空。</translation>
    </message>
    <message>
        <source>The program passed no record for foreigners&apos; cards of the 2017 edition.</source>
        <translation>程序没有传入 2017 版外国人永久居留身份证的记录。</translation>
    </message>
    <message>
        <source>The argument f2017 is null.</source>
        <translation>参数 f2017 为空。</translation>
    </message>
    <message>
        <source>The program passed no record for foreigners&apos; cards of the new edition.</source>
        <translation>程序没有传入新版外国人永久居留身份证的记录。</translation>
    </message>
    <message>
        <source>The argument fNew is null.</source>
        <translation>参数 fNew 为空。</translation>
    </message>
    <message>
        <source>The program passed no record for residence permits.</source>
        <translation>程序没有传入港澳台居民居住证的记录。</translation>
    </message>
    <message>
        <source>The argument hmt is null.</source>
        <translation>参数 hmt 为空。</translation>
    </message>
    <message>
        <source>The program passed no place for the picture of the front.</source>
        <translation>程序没有传入存放正面图像的位置。</translation>
    </message>
    <message>
        <source>The argument frontImage is null.</source>
        <translation>参数 frontImage 为空。</translation>
    </message>
    <message>
        <source>The program passed no place for the picture of the back.</source>
        <translation>程序没有传入存放背面图像的位置。</translation>
    </message>
    <message>
        <source>The argument backImage is null.</source>
        <translation>参数 backImage 为空。</translation>
    </message>
    <message>
        <source>Unplug the reader, plug it in, straight into the computer if it hangs on a hub, and read once more.</source>
        <translation>请重新插拔读卡器（如果接在集线器上，请直接插到计算机上），再读一次。</translation>
    </message>
    <message>
        <source>Lay the card flat on the middle of the reader, keep it still, take other cards away and read once more.</source>
        <translation>请将证件平放在读卡器中央，不要移动，移开其他卡片，再读一次。</translation>
    </message>
    <message>
        <source>Read once more. If it happens again, see with &quot;idcard-reader usb --list&quot; that the ids are those of the reader, and plug the reader in again.</source>
        <translation>请再读一次。如果仍然出现，请用“idcard-reader usb --list”确认标识是读卡器的标识，并重新插拔读卡器。</translation>
    </message>
    <message>
        <source>The reader gave no answer within five seconds, or the transfer failed: it hangs, its cable is bad, or the device with these ids is not a card reader.</source>
        <translation>读卡器在五秒内没有应答，或传输失败：读卡器已停止响应、线缆不良，或具有该标识的设备不是读卡器。</translation>
    </message>
    <message>
        <source>The device did not take the whole command: it hangs, its cable is bad, or the device with these ids is not a card reader.</source>
        <translation>设备没有收下完整的命令：设备已停止响应、线缆不良，或具有该标识的设备不是读卡器。</translation>
    </message>
    <message>
        <source>The reader&apos;s answer is not a card record.</source>
        <translation>读卡器的应答不是证件记录。</translation>
    </message>
    <message>
        <source>The reader found the card and delivered its record.</source>
        <translation>读卡器找到了证件并给出了记录。</translation>
    </message>
    <message>
        <source>USB could not be used.</source>
        <translation>无法使用 USB。</translation>
    </message>
    <message>
        <source>The system has no USB, or this program may not see it: libusb could not be set up.</source>
        <translation>系统没有 USB，或本程序无权访问：libusb 无法初始化。</translation>
    </message>
    <message>
        <source>See that /dev/bus/usb exists; in a container it must be passed through.</source>
        <translation>请确认 /dev/bus/usb 存在；在容器中运行时须将其传入容器。</translation>
    </message>
    <message>
        <source>The USB devices could not be listed.</source>
        <translation>无法列出 USB 设备。</translation>
    </message>
    <message>
        <source>There is no list of devices, or memory ran out.</source>
        <translation>没有设备列表，或内存不足。</translation>
    </message>
    <message>
        <source>See that /sys/bus/usb and /dev/bus/usb exist and can be read; in a container both must be passed through.</source>
        <translation>请确认 /sys/bus/usb 和 /dev/bus/usb 存在且可读；在容器中运行时须将两者传入容器。</translation>
    </message>
    <message>
        <source>The search for the reader was broken off.</source>
        <translation>查找读卡器时中断。</translation>
    </message>
    <message>
        <source>A USB device that is listed before the reader could not be described.</source>
        <translation>排在读卡器之前的某个 USB 设备无法读取描述信息。</translation>
    </message>
    <message>
        <source>Unplug other USB devices, or plug the reader in again, and read once more.</source>
        <translation>请拔下其他 USB 设备，或重新插拔读卡器，再读一次。</translation>
    </message>
    <message>
        <source>The reader is there, but the system refused to open it, for instance because it was being plugged in or the program has too many files open.</source>
        <translation>读卡器已接入，但系统拒绝打开它，例如正在插入，或程序打开的文件过多。</translation>
    </message>
    <message>
        <source>This user may not use the reader.</source>
        <translation>当前用户无权使用读卡器。</translation>
    </message>
    <message>
        <source>The reader is there, but its device node is not open to this user: the udev rule for the reader is missing, or the user is not in its group.</source>
        <translation>读卡器已接入，但当前用户无权访问其设备节点：缺少读卡器的 udev 规则，或用户不在相应的用户组中。</translation>
    </message>
    <message>
        <source>Run &quot;idcard-reader-access&quot; as root while the reader is plugged in: it opens the reader to the user at the machine and to the group idcard-reader. A user who was added to the group logs in again.</source>
        <translation>请在读卡器接入时以 root 身份运行“idcard-reader-access”：它把读卡器开放给在本机前登录的用户和 idcard-reader 组。新加入该组的用户须重新登录。</translation>
    </message>
    <message>
        <source>There is no such reader.</source>
        <translation>没有这个读卡器。</translation>
    </message>
    <message>
        <source>Plug the reader in and see with &quot;idcard-reader usb --list&quot; which ids it has.</source>
        <translation>请插好读卡器，用“idcard-reader usb --list”查看其标识。</translation>
    </message>
    <message>
        <source>The reader is in use.</source>
        <translation>读卡器正被占用。</translation>
    </message>
    <message>
        <source>Another program holds the reader, for instance one that reads cards through the reader maker&apos;s library, or the computer&apos;s kernel would not give it up.</source>
        <translation>其他程序占用了读卡器，例如正通过读卡器厂商的库读卡的程序；或者计算机的内核没有释放它。</translation>
    </message>
    <message>
        <source>End the other program (as root, &quot;fuser -v&quot; with the device&apos;s node names it) and read once more.</source>
        <translation>请退出该程序（以 root 身份对设备节点运行“fuser -v”可查出程序名），再读一次。</translation>
    </message>
    <message>
        <source>The reader could not be reset.</source>
        <translation>无法复位读卡器。</translation>
    </message>
    <message>
        <source>The reader was opened and did not come back from its reset.</source>
        <translation>读卡器已打开，但复位后没有恢复。</translation>
    </message>
    <message>
        <source>No card lies on the reader, it lies beside the antenna, or it is not a card that the reader knows. A device that is not a card reader may answer like that too.</source>
        <translation>读卡器上没有证件，证件偏离了感应区，或读卡器不认识该证件。不是读卡器的设备也可能这样应答。</translation>
    </message>
    <message>
        <source>The reader did not answer whether a card is there.</source>
        <translation>读卡器没有应答是否有证件。</translation>
    </message>
    <message>
        <source>The command to look for a card could not be sent.</source>
        <translation>无法向读卡器发出寻卡命令。</translation>
    </message>
    <message>
        <source>The card was lost.</source>
        <translation>证件已离开。</translation>
    </message>
    <message>
        <source>The reader found the card and could not select it: it was moved, or two cards lie on the reader.</source>
        <translation>读卡器找到了证件，但无法选中：证件被移动，或读卡器上有两张卡。</translation>
    </message>
    <message>
        <source>The reader did not answer whether it selected the card.</source>
        <translation>读卡器没有应答是否已选中证件。</translation>
    </message>
    <message>
        <source>The command to select the card could not be sent.</source>
        <translation>无法向读卡器发出选卡命令。</translation>
    </message>
    <message>
        <source>The answer is not as long as a record with no, one or two fingerprints.</source>
        <translation>应答的长度与不含指纹、含一枚或两枚指纹的记录都不符。</translation>
    </message>
    <message>
        <source>The answer does not begin as the reader&apos;s frames do.</source>
        <translation>应答的开头不是读卡器的帧头。</translation>
    </message>
    <message>
        <source>The reader reported a failure, or lengths of text and photo that no card has.</source>
        <translation>读卡器报告失败，或给出的文字和照片长度不属于任何证件。</translation>
    </message>
    <message>
        <source>The answer is longer or shorter than it says it is.</source>
        <translation>应答的实际长度与其声明的长度不符。</translation>
    </message>
    <message>
        <source>The answer declares an amount of fingerprint data that no card has.</source>
        <translation>应答声明的指纹数据长度不属于任何证件。</translation>
    </message>
    <message>
        <source>The card was found, but the reader did not deliver its record within five seconds, or the transfer failed.</source>
        <translation>找到了证件，但读卡器在五秒内没有给出记录，或传输失败。</translation>
    </message>
    <message>
        <source>The command to read the card could not be sent.</source>
        <translation>无法向读卡器发出读卡命令。</translation>
    </message>
    <message>
        <source>The card gave no data.</source>
        <translation>证件没有给出数据。</translation>
    </message>
    <message>
        <source>The card was taken off while it was read, it lies beside the antenna, or it is not a card that the reader knows.</source>
        <translation>读卡时证件被取走，证件偏离了感应区，或读卡器不认识该证件。</translation>
    </message>
    <message>
        <source>The reader was unplugged while it was used.</source>
        <translation>使用过程中读卡器被拔出。</translation>
    </message>
    <message>
        <source>The reader was there and is not any more: its cable came off, it lost its power, or it broke down.</source>
        <translation>读卡器原先在线，现已断开：线缆脱落、断电或发生故障。</translation>
    </message>
    <message>
        <source>Plug the reader in again and read once more.</source>
        <translation>请重新插好读卡器，再读一次。</translation>
    </message>
    <message>
        <source>Done as asked.</source>
        <translation>已按要求完成。</translation>
    </message>
    <message>
        <source>The program itself failed: the simulator could not be loaded, or standard output could not be written.</source>
        <translation>程序自身失败：无法加载模拟器，或无法写入标准输出。</translation>
    </message>
    <message>
        <source>No card was found on the reader, or none came while waiting.</source>
        <translation>读卡器上没有找到证件，或等待期间没有放上证件。</translation>
    </message>
    <message>
        <source>The files could not be written.</source>
        <translation>无法写入文件。</translation>
    </message>
    <message>
        <source>The reader answered, but with nothing that could be read.</source>
        <translation>读卡器有应答，但没有可以读取的内容。</translation>
    </message>
    <message>
        <source>The doctor found nothing worse than warnings: reading may work, or not as well as it could.</source>
        <translation>检查没有发现比警告更严重的问题：可能可以读卡，但效果也许不佳。</translation>
    </message>
    <message>
        <source>The doctor found a failure: something does not work.</source>
        <translation>检查发现失败：有的部分无法工作。</translation>
    </message>
    <message>
        <source>Reading the card did not end within the time of --timeout, and was given up.</source>
        <translation>没有在 --timeout 指定的时间内读完证件，已放弃。</translation>
    </message>
    <message>
        <source>The simulator could not be loaded.</source>
        <translation>无法加载模拟器。</translation>
    </message>
    <message>
        <source>Build or install libidcard_simulator.so, or name it in the environment variable IDCARD_SIMULATOR_LIBRARY.</source>
        <translation>请编译或安装 libidcard_simulator.so，或用环境变量 IDCARD_SIMULATOR_LIBRARY 指定它。</translation>
    </message>
    <message>
        <source>The simulator refuses the card or the faults.</source>
        <translation>模拟器不接受该证件或故障。</translation>
    </message>
    <message>
        <source>Correct the card&apos;s description or the faults; &quot;idcard-reader cards&quot; lists the built-in cards, &quot;idcard-reader read --help&quot; the faults.</source>
        <translation>请改正证件描述或故障；“idcard-reader cards”列出内置的证件，“idcard-reader read --help”列出故障。</translation>
    </message>
    <message>
        <source>Two options contradict each other.</source>
        <translation>两个选项互相矛盾。</translation>
    </message>
    <message>
        <source>Name a place where this user may write and where there is room; --force replaces files that are there.</source>
        <translation>请指定当前用户可以写入、空间足够的位置；--force 替换已有的文件。</translation>
    </message>
    <message>
        <source>The record could not be read.</source>
        <translation>无法读取原始记录。</translation>
    </message>
    <message>
        <source>Name a file that holds a raw card record.</source>
        <translation>请指定含有证件原始记录的文件。</translation>
    </message>
    <message>
        <source>The bytes are not a raw card record.</source>
        <translation>内容不是证件的原始记录。</translation>
    </message>
    <message>
        <source>Name a file that &quot;idcard-reader usb --raw&quot; has written.</source>
        <translation>请指定由“idcard-reader usb --raw”写入的文件。</translation>
    </message>
    <message>
        <source>The card&apos;s text could not be decoded.</source>
        <translation>无法解码证件的文字。</translation>
    </message>
    <message>
        <source>Read the card once more.</source>
        <translation>请再读一次卡。</translation>
    </message>
    <message>
        <source>The wait was broken off before a card was found.</source>
        <translation>找到证件之前，等待已中断。</translation>
    </message>
    <message>
        <source>Start again to wait for a card.</source>
        <translation>如需等待证件，请重新运行。</translation>
    </message>
    <message>
        <source>The reading in progress was broken off.</source>
        <translation>正在进行的读卡已中断。</translation>
    </message>
    <message>
        <source>If the reader does not answer any more, unplug it and plug it in again.</source>
        <translation>如果读卡器不再应答，请重新插拔读卡器。</translation>
    </message>
    <message>
        <source>Reading the card did not end in time.</source>
        <translation>没有在限定时间内读完证件。</translation>
    </message>
    <message>
        <source>Lay the card flat on the middle of the reader, keep it still and read once more; if it happens again, unplug the reader and plug it in.</source>
        <translation>请将证件平放在读卡器中央，不要移动，再读一次；如果仍然出现，请重新插拔读卡器。</translation>
    </message>
    <message>
        <source>The library returned a code that this program does not know.</source>
        <translation>库返回了本程序不认识的代码。</translation>
    </message>
    <message>
        <source>Install the program and the library of the same version.</source>
        <translation>请安装同一版本的程序和库。</translation>
    </message>
    <message>
        <source>The program is broken.</source>
        <translation>程序已损坏。</translation>
    </message>
    <message>
        <source>Install it again.</source>
        <translation>请重新安装。</translation>
    </message>
    <message>
        <source>Leave one of them out.</source>
        <translation>请去掉其中一个。</translation>
    </message>
    <message>
        <source>The command line is wrong.</source>
        <translation>命令行有误。</translation>
    </message>
    <message>
        <source>Correct it; &quot;idcard-reader help&quot; describes the commands and their options.</source>
        <translation>请修改命令行；“idcard-reader help”说明各命令及其选项。</translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation>%1，位于 %2</translation>
    </message>
    <message>
        <source>Several USB devices could be the reader: %1. Name its ids with --device, or as device in a configuration file.</source>
        <translation>可能是读卡器的 USB 设备有多个：%1。请用 --device 指定其标识，或在配置文件中以 device 指定。</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>Wrong usage: an unknown option or value, a mistake in a configuration file, several readers of which --device names none, a card description or fault that the simulator refuses, or a file that is not a raw card record.</source>
        <translation>用法错误：未知的选项或值，配置文件有误，有多台读卡器而没有用 --device 指定，模拟器不接受的证件描述或故障，或者文件不是证件的原始记录。</translation>
    </message>
    <message>
        <source>Several USB devices could be the reader.</source>
        <translation>可能是读卡器的 USB 设备有多个。</translation>
    </message>
    <message>
        <source>Name the ids of the reader with --device.</source>
        <translation>请用 --device 指定读卡器的标识。</translation>
    </message>
    <message>
        <source>A configuration file has a mistake.</source>
        <translation>配置文件有误。</translation>
    </message>
    <message>
        <source>Correct the file; &quot;idcard-reader doctor&quot; shows which files there are and what they say.</source>
        <translation>请改正该文件；“idcard-reader doctor”显示有哪些配置文件及其内容。</translation>
    </message>
    <message>
        <source>No USB device has the vendor and product id that are named or, where none are, the pipes of a reader and no kernel driver: it is not plugged in, or is another one.</source>
        <translation>没有 USB 设备具有指定的厂商和产品标识；未指定标识时，没有设备具有读卡器的端点且未绑定内核驱动：读卡器没有插好，或是另一种读卡器。</translation>
    </message>
    <message>
        <source>Several USB devices with the same ids could be the reader: %1. Unplug all but one: --device cannot distinguish them.</source>
        <translation>有多个标识相同的 USB 设备可能是读卡器：%1。请只留下一个，拔出其余的：--device 无法区分它们。</translation>
    </message>
    <message>
        <source>Unplug all readers but one.</source>
        <translation>请只留下一台读卡器，拔出其余的。</translation>
    </message>
</context>
<context>
    <name>Service</name>
    <message>
        <source>The bus cannot be reached: %1. Start the program where there is one, for instance within dbus-run-session.</source>
        <translation>无法连接总线：%1。请在有总线的环境中启动本程序，例如通过 dbus-run-session。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is none of photo, pictures and fingerprints.</source>
        <translation>“%1”不是 photo、pictures、fingerprints 之一。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is asked for twice.</source>
        <translation>“%1”被要求了两次。</translation>
    </message>
    <message>
        <source>The time limit is %1 ms; it takes 1 to %2.</source>
        <translation>时间限制为 %1 毫秒；可用值为 1 到 %2。</translation>
    </message>
    <message>
        <source>%1 takes arguments of the types &quot;%2&quot;.</source>
        <translation>%1 的参数类型为“%2”。</translation>
    </message>
    <message>
        <source>There is no such method.</source>
        <translation>没有这个方法。</translation>
    </message>
    <message>
        <source>There is no such error.</source>
        <translation>没有这个错误。</translation>
    </message>
    <message>
        <source>There is no such property.</source>
        <translation>没有这个属性。</translation>
    </message>
    <message>
        <source>The property can only be read.</source>
        <translation>该属性只能读取。</translation>
    </message>
    <message>
        <source>Which of them is meant is not known.</source>
        <translation>不知道指的是其中哪一个。</translation>
    </message>
    <message>
        <source>Unplug the others, or name the ids of the reader in the configuration file of the machine.</source>
        <translation>请拔下其他设备，或在本机的配置文件中写明读卡器的 ID。</translation>
    </message>
    <message>
        <source>The reader asks again and again for another try, or does not answer.</source>
        <translation>读卡器一再要求重试，或者没有应答。</translation>
    </message>
    <message>
        <source>The reading was cancelled.</source>
        <translation>读取已取消。</translation>
    </message>
    <message>
        <source>The program that asked for the card asked to stop, or the service was ended.</source>
        <translation>请求读卡的程序要求停止，或者服务被结束。</translation>
    </message>
    <message>
        <source>Read once more.</source>
        <translation>请再读一次。</translation>
    </message>
    <message>
        <source>The reader is in use.</source>
        <translation>读卡器正被占用。</translation>
    </message>
    <message>
        <source>A program is reading through the service, which serves one at a time.</source>
        <translation>有程序正通过本服务读卡，而本服务一次只服务一个程序。</translation>
    </message>
    <message>
        <source>Wait until the reader is free, or end the other program.</source>
        <translation>请等到读卡器空闲，或结束另一个程序。</translation>
    </message>
    <message>
        <source>This program may not read cards.</source>
        <translation>该程序无权读卡。</translation>
    </message>
    <message>
        <source>The rules of this machine do not allow it to its user.</source>
        <translation>本机的规则不允许该程序的用户读卡。</translation>
    </message>
    <message>
        <source>Ask the administrator of this machine for a rule that allows it.</source>
        <translation>请让本机管理员添加允许读卡的规则。</translation>
    </message>
    <message>
        <source>The call to the service is wrong.</source>
        <translation>对服务的调用有误。</translation>
    </message>
    <message>
        <source>An argument has a value that it may not have.</source>
        <translation>某个参数的值不被接受。</translation>
    </message>
    <message>
        <source>Correct the program that calls; idcard-readerd(8) describes the arguments.</source>
        <translation>请更正调用的程序；idcard-readerd(8) 说明了各参数。</translation>
    </message>
    <message>
        <source>A key or a value in it is unknown, or a line is not one of both.</source>
        <translation>其中的键或值无法识别，或者某一行不是键和值。</translation>
    </message>
    <message>
        <source>The program that reads the card failed.</source>
        <translation>读取证件的程序出错。</translation>
    </message>
    <message>
        <source>idcard-reader, which the service starts, was not found, crashed, did not end, or printed what is no result.</source>
        <translation>服务所启动的 idcard-reader 未找到、崩溃、没有结束，或输出的不是结果。</translation>
    </message>
    <message>
        <source>Read once more. If it happens again, run &quot;idcard-reader doctor&quot; and install the programs again.</source>
        <translation>请再读一次。若再次发生，请运行“idcard-reader doctor”，并重新安装程序。</translation>
    </message>
    <message>
        <source>Read this card, without a reader: a name from &quot;idcard-reader cards&quot; or a file that describes a card.</source>
        <translation>不用读卡器，读取这张证件：“idcard-reader cards”列出的名称，或描述证件的文件。</translation>
    </message>
    <message>
        <source>Let the simulator fail, with one of the faults of &quot;idcard-reader read --help&quot; or several separated by commas.</source>
        <translation>让模拟器出错：“idcard-reader read --help”所列的一个故障，或以逗号分隔的多个。</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>显示此帮助。</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>显示版本。</translation>
    </message>
    <message>
        <source>No program needed it any more, or it was ended by a signal.</source>
        <translation>不再有程序需要它，或被信号结束。</translation>
    </message>
    <message>
        <source>There is no bus, or the name is taken on it.</source>
        <translation>没有总线，或名称在总线上已被占用。</translation>
    </message>
    <message>
        <source>Wrong usage: an unknown option or value.</source>
        <translation>用法错误：未知的选项或值。</translation>
    </message>
    <message>
        <source>Reads cards for other programs, which call it over D-Bus. The bus starts it when it is needed; it ends after a minute without a call.</source>
        <translation>为其他程序读卡，它们通过 D-Bus 调用它。需要时由总线启动；一分钟内没有调用就结束。</translation>
    </message>
    <message>
        <source>A program has been using it through the service since %1.</source>
        <translation>自 %1 起，有程序正通过本服务使用它。</translation>
    </message>
    <message>
        <source>polkit refuses the action %1 to this program.</source>
        <translation>polkit 拒绝该程序执行操作 %1。</translation>
    </message>
    <message>
        <source>The name %1 cannot be had on the bus: another service has it, or this user may not. systemd starts the service as the user who may.</source>
        <translation>无法取得总线上的名称 %1：另一个服务已占用，或该用户无权取得。systemd 会以有权的用户启动本服务。</translation>
    </message>
    <message>
        <source>Serve on the user&apos;s own bus, to every program on it, not on that of the system to those that polkit allows it.</source>
        <translation>在用户自己的总线上为其上的所有程序服务，而不是在系统总线上为 polkit 允许的程序服务。</translation>
    </message>
    <message>
        <source>polkit did not decide on the action %1 (%2).</source>
        <translation>polkit 未对操作 %1 作出决定（%2）。</translation>
    </message>
</context>
<context>
    <name>Simulator</name>
    <message>
        <source>The simulator could not be loaded: %1. Build or install %2, or name it in the environment variable %3.</source>
        <translation>无法加载模拟器：%1。请编译或安装 %2，或用环境变量 %3 指定它。</translation>
    </message>
    <message>
        <source>The simulator refuses the card: %1</source>
        <translation>模拟器不接受该证件：%1</translation>
    </message>
    <message>
        <source>there is no %1</source>
        <translation>没有 %1</translation>
    </message>
    <message>
        <source>%1 is not a simulator of this version</source>
        <translation>%1 不是这个版本的模拟器</translation>
    </message>
    <message>
        <source>The simulator refuses the faults: %1</source>
        <translation>模拟器不接受这些故障：%1</translation>
    </message>
</context>
<context>
    <name>System</name>
    <message>
        <source>Aborted</source>
        <translation>已中止</translation>
    </message>
    <message>
        <source>Bad file descriptor</source>
        <translation>文件描述符无效</translation>
    </message>
    <message>
        <source>Broken pipe</source>
        <translation>管道已断开</translation>
    </message>
    <message>
        <source>Bus error</source>
        <translation>总线错误</translation>
    </message>
    <message>
        <source>Directory not empty</source>
        <translation>文件夹非空</translation>
    </message>
    <message>
        <source>Disk quota exceeded</source>
        <translation>超出磁盘配额</translation>
    </message>
    <message>
        <source>File exists</source>
        <translation>文件已存在</translation>
    </message>
    <message>
        <source>File name too long</source>
        <translation>文件名过长</translation>
    </message>
    <message>
        <source>File too large</source>
        <translation>文件过大</translation>
    </message>
    <message>
        <source>Floating point exception</source>
        <translation>浮点异常</translation>
    </message>
    <message>
        <source>Illegal instruction</source>
        <translation>非法指令</translation>
    </message>
    <message>
        <source>Input/output error</source>
        <translation>输入/输出错误</translation>
    </message>
    <message>
        <source>Invalid argument</source>
        <translation>参数无效</translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation>是一个文件夹</translation>
    </message>
    <message>
        <source>Killed</source>
        <translation>已被终止</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>磁盘空间不足</translation>
    </message>
    <message>
        <source>No such device or address</source>
        <translation>没有该设备或地址</translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation>没有该文件或文件夹</translation>
    </message>
    <message>
        <source>Not a directory</source>
        <translation>不是文件夹</translation>
    </message>
    <message>
        <source>Operation not permitted</source>
        <translation>不允许该操作</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>权限不足</translation>
    </message>
    <message>
        <source>Read-only file system</source>
        <translation>文件系统是只读的</translation>
    </message>
    <message>
        <source>Segmentation fault</source>
        <translation>段错误</translation>
    </message>
    <message>
        <source>Too many levels of symbolic links</source>
        <translation>符号链接层数过多</translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation>打开的文件过多</translation>
    </message>
    <message>
        <source>The address is not available</source>
        <translation>该地址不可用</translation>
    </message>
    <message>
        <source>The address is protected</source>
        <translation>该地址受保护</translation>
    </message>
    <message>
        <source>The bound address is already in use</source>
        <translation>该地址已被使用</translation>
    </message>
</context>
<context>
    <name>Tool</name>
    <message>
        <source>Saved the card in %1.</source>
        <translation>证件已保存到 %1。</translation>
    </message>
    <message>
        <source>The photo of a simulated reader needs --simulator-photos.</source>
        <translation>模拟读卡器的照片需要使用 --simulator-photos。</translation>
    </message>
    <message>
        <source>NAME</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>KIND</source>
        <translation>种类</translation>
    </message>
    <message>
        <source>TITLE</source>
        <translation>说明</translation>
    </message>
    <message>
        <source>The built-in card %1 cannot be used; this program is broken. Install it again.</source>
        <translation>内置证件 %1 无法使用；程序已损坏。请重新安装。</translation>
    </message>
    <message>
        <source>Standard input</source>
        <translation>标准输入</translation>
    </message>
    <message>
        <source>%1 could not be read: %2. Name a file that holds a raw card record.</source>
        <translation>无法读取“%1”：%2。请指定含有证件原始记录的文件。</translation>
    </message>
    <message>
        <source>%1 is not a raw card record: %2</source>
        <translation>“%1”不是证件的原始记录：%2</translation>
    </message>
    <message>
        <source>%1 is an odd record: %2</source>
        <translation>“%1”是不寻常的记录：%2</translation>
    </message>
    <message>
        <source>--device has no meaning together with --road library, which finds its reader itself.
See &quot;idcard-reader doctor --help&quot;.</source>
        <translation>--device 不能与 --road library 一起使用，后者自行查找读卡器。
请看“idcard-reader doctor --help”。</translation>
    </message>
    <message>
        <source>Exit status</source>
        <translation>退出状态</translation>
    </message>
    <message>
        <source>Faults of the simulator</source>
        <translation>模拟器的故障</translation>
    </message>
    <message>
        <source>Qt&apos;s platform; &quot;offscreen&quot; is chosen when there is no display.</source>
        <translation>Qt 的平台；没有显示服务时选用“offscreen”。</translation>
    </message>
    <message>
        <source>The simulator&apos;s library file, if it is not found automatically.</source>
        <translation>模拟器的库文件，无法自动找到时使用。</translation>
    </message>
    <message>
        <source>Set to anything, it keeps colours off the terminal.</source>
        <translation>设为任意值时，终端上不使用颜色。</translation>
    </message>
    <message>
        <source>Environment</source>
        <translation>环境变量</translation>
    </message>
    <message>
        <source>Usage: idcard-reader COMMAND [options]

</source>
        <translation>用法：idcard-reader 命令 [选项]

</translation>
    </message>
    <message>
        <source>Reads Chinese identity documents with a desktop card reader: resident identity cards, residence permits for Hong Kong, Macao and Taiwan residents, and foreigners&apos; permanent residence cards.</source>
        <translation>通过台式读卡器读取中国身份证件：居民身份证、港澳台居民居住证和外国人永久居留身份证。</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>命令</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>选项</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>显示此帮助。</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>显示版本。</translation>
    </message>
    <message>
        <source>
&quot;idcard-reader help COMMAND&quot; describes a command.
</source>
        <translation>
“idcard-reader help COMMAND”说明一个命令。
</translation>
    </message>
    <message>
        <source>Usage: %1

</source>
        <translation>用法：%1

</translation>
    </message>
    <message>
        <source>
Examples:
</source>
        <translation>
示例：
</translation>
    </message>
    <message>
        <source>There is no display; Qt&apos;s offscreen platform is used.</source>
        <translation>没有显示服务；使用 Qt 的 offscreen 平台。</translation>
    </message>
    <message>
        <source>Print JSON for programs, not a table.</source>
        <translation>打印供程序使用的 JSON，而不是表格。</translation>
    </message>
    <message>
        <source>Put these parts of the card into the JSON, in base64 as &quot;data&quot; beside &quot;file&quot;, without writing a file: photo, pictures, fingerprints or several separated by commas; all stands for the three, the fingerprints too. &quot;idcard-reader usb&quot; and &quot;decode&quot; have no pictures.</source>
        <translation>把证件的这些部分以 base64 写入 JSON，放在“file”旁边的“data”中，不写文件：photo（照片）、pictures（两面图像）、fingerprints（指纹），或用逗号分隔的几项；all 表示全部三项，包括指纹。“idcard-reader usb”和“decode”没有图像。</translation>
    </message>
    <message>
        <source>photo, pictures, fingerprints or all, separated by commas</source>
        <translation>用逗号分隔的 photo、pictures、fingerprints 或 all</translation>
    </message>
    <message>
        <source>If no card lies on the reader, wait up to this long for one.</source>
        <translation>读卡器上没有证件时最多等待的秒数。</translation>
    </message>
    <message>
        <source>Let the simulator fail, with one of the faults below or several separated by commas.</source>
        <translation>让模拟器出现故障：下列故障之一，或用逗号分隔的几项。</translation>
    </message>
    <message>
        <source>Decode the photo with the simulator&apos;s decoder, not with the maker&apos;s: simulated readers and their records have photos in a code of the simulator&apos;s own.</source>
        <translation>用模拟器的解码库解码照片，而不用厂商的：模拟读卡器及其记录中的照片采用模拟器自己的格式。</translation>
    </message>
    <message>
        <source>The reader on the USB bus, by its vendor and product id: four hexadecimal digits each, such as 1209:0001. Not needed where one device alone has the pipes of a reader and no kernel driver; &quot;idcard-reader usb --list&quot; shows what is plugged in.</source>
        <translation>USB 读卡器，以厂商标识和产品标识指定：各四位十六进制数字，例如 1209:0001。只有一个设备具有读卡器的端点、又没有绑定内核驱动时不需要；“idcard-reader usb --list”显示已接入的设备。</translation>
    </message>
    <message>
        <source>Save the card in this folder, which is made if need be: card.json, photo.bmp and, when the card has fingerprints, fingerprints.dat. Only their owner can read the files. Pictures of the card&apos;s sides are painted by &quot;idcard-reader read&quot; alone.</source>
        <translation>把证件存入此文件夹，必要时新建：card.json、photo.bmp，证件有指纹时还有 fingerprints.dat。文件只有属主可读。证件两面的图像只由“idcard-reader read”绘制。</translation>
    </message>
    <message>
        <source>Replace the card that the folder of --out holds. Without it nothing is overwritten.</source>
        <translation>替换 --out 指定的文件夹中已有的证件。不加此选项时不覆盖任何文件。</translation>
    </message>
    <message>
        <source>read the card that lies on the reader</source>
        <translation>读取读卡器上的证件</translation>
    </message>
    <message>
        <source>Reads the card that lies on the reader once and prints what it holds.</source>
        <translation>读取一次读卡器上的证件，并打印其中的内容。</translation>
    </message>
    <message>
        <source>  idcard-reader read
      read a card and show it
  idcard-reader read --wait 30 --json
      give the user half a minute to lay a card on the reader, print JSON
  idcard-reader read --out visitor
      save the card, its photo and its pictures in the folder
      &quot;visitor&quot; as well
  idcard-reader read --simulate resident
      try it without a reader (see &quot;idcard-reader cards&quot;)
</source>
        <translation>  idcard-reader read
      读取证件并显示
  idcard-reader read --wait 30 --json
      给用户半分钟时间放上证件，打印 JSON
  idcard-reader read --out visitor
      并把证件及其照片和图像存入文件夹“visitor”
  idcard-reader read --simulate resident
      没有读卡器时试用（见“idcard-reader cards”）
</translation>
    </message>
    <message>
        <source>Save the card in this folder, which is made if need be: card.json, photo.bmp, the pictures of the card&apos;s sides front.jpg and back.jpg and, when the card has fingerprints, fingerprints.dat. Only their owner can read the files. A permit for Hong Kong, Macao and Taiwan residents whose number begins with none of 81, 82, 83 has no back.jpg.</source>
        <translation>把证件存入此文件夹，必要时新建：card.json、photo.bmp、两面图像 front.jpg 和 back.jpg，证件有指纹时还有 fingerprints.dat。文件只有属主可读。号码不以 81、82、83 开头的港澳台居民居住证没有 back.jpg。</translation>
    </message>
    <message>
        <source>Read this card on the simulator, without a reader: a name from &quot;idcard-reader cards&quot; or a file that describes a card.</source>
        <translation>不用读卡器，在模拟器上读取此证件：“idcard-reader cards”列出的名称，或描述证件的文件。</translation>
    </message>
    <message>
        <source>read card after card, one line of JSON each</source>
        <translation>连续读取多张证件，一张一行 JSON</translation>
    </message>
    <message>
        <source>Waits for cards and prints every card once, as one line of JSON, until it is ended with Ctrl-C. A card is new when the reader was empty before it or when it holds something else than the card before. A card that cannot be read and a reader that is not there are reported on standard error, and watching continues.</source>
        <translation>等待证件，每张证件打印一次，一张一行 JSON，直到用 Ctrl-C 结束。读卡器此前是空的，或者读卡器上的内容与前一张证件不同，就是新的证件。读不成的证件和没有接入的读卡器报告在标准错误上，并继续等待。</translation>
    </message>
    <message>
        <source>Print each failure as one line of JSON as well, and with a card what kept it from being saved.</source>
        <translation>每次失败也打印一行 JSON；证件未能保存时，原因随证件一并给出。</translation>
    </message>
    <message>
        <source>Save every card in a folder of its own in this folder: 0001, 0002, ... after the highest number that is there. The files are those of &quot;idcard-reader read --out&quot;. Only their owner can read them.</source>
        <translation>把每张证件存入此文件夹下各自的文件夹：0001、0002……接着已有的最大编号。文件与“idcard-reader read --out”的相同，只有属主可读。</translation>
    </message>
    <message>
        <source>End after so many cards.</source>
        <translation>读到指定张数的证件后结束。</translation>
    </message>
    <message>
        <source>Pause between two looks at the reader; 500 if not given.</source>
        <translation>两次查看读卡器之间停顿的毫秒数；不指定时为 500。</translation>
    </message>
    <message>
        <source>Put this card on the simulator, without a reader: a name from &quot;idcard-reader cards&quot; or a file that describes a card. Given several times, the cards come one after the other, and the program ends after the last.</source>
        <translation>不用读卡器，把此证件放到模拟器上：“idcard-reader cards”列出的名称，或描述证件的文件。可以多次指定，证件依次出现，最后一张之后程序结束。</translation>
    </message>
    <message>
        <source>read the card over USB, without the maker&apos;s library</source>
        <translation>通过 USB 读卡，不用厂商的库</translation>
    </message>
    <message>
        <source>Reads the card that lies on a reader on the USB bus once and prints what it holds. The reader maker&apos;s library is not needed; the photo needs its photo decoder. A reader that this user may not open, that another program holds or that is not there is reported as such, with what to do about it.</source>
        <translation>读取一次 USB 读卡器上的证件，并打印其中的内容。不需要读卡器厂商的库；照片需要其照片解码库。当前用户无权打开、被其他程序占用或没有接入的读卡器，会照实报告，并说明该怎么办。</translation>
    </message>
    <message>
        <source>  idcard-reader usb --list
      show what is plugged in, and the ids for --device
  idcard-reader usb --device 1209:0001
      read a card and show it
  idcard-reader usb --device 1209:0001 --wait 30 --json --out visitor
      wait half a minute for a card, print JSON, save the card in &quot;visitor&quot;
  idcard-reader usb --device 1209:0001 --raw visitor.rec
      keep the record for &quot;idcard-reader decode&quot; as well
</source>
        <translation>  idcard-reader usb --list
      显示已接入的设备，以及供 --device 使用的标识
  idcard-reader usb --device 1209:0001
      读取证件并显示
  idcard-reader usb --device 1209:0001 --wait 30 --json --out visitor
      用半分钟等待证件，打印 JSON，并把证件存入“visitor”
  idcard-reader usb --device 1209:0001 --raw visitor.rec
      并保留记录，供“idcard-reader decode”使用
</translation>
    </message>
    <message>
        <source>Read no card; list the USB devices but hubs: ids, device node, whether this user may open it, whether it has the pipes of a reader, and what it says it is.</source>
        <translation>不读卡，列出集线器以外的 USB 设备：标识、设备节点、当前用户是否有权打开、有没有读卡器的端点，以及设备的自我描述。</translation>
    </message>
    <message>
        <source>Keep the raw record in this file as the reader sent it, also when it cannot be decoded; &quot;idcard-reader decode&quot; reads it. Only its owner can read the file.</source>
        <translation>把读卡器给出的原始记录原样存入此文件，无法解码时也会保存；可用“idcard-reader decode”读取。文件只有属主可读。</translation>
    </message>
    <message>
        <source>Replace the card that the folder of --out holds, and the file of --raw. Without it nothing is overwritten.</source>
        <translation>替换 --out 指定的文件夹中已有的证件，以及 --raw 指定的文件。不加此选项时不覆盖任何文件。</translation>
    </message>
    <message>
        <source>decode a raw card record</source>
        <translation>解码证件的原始记录</translation>
    </message>
    <message>
        <source>Decodes a raw card record as &quot;idcard-reader usb --raw&quot; keeps it, 1297, 1809 or 2321 bytes, and prints what it holds. Without FILE, or with -, it comes from standard input. Anything else is refused, with the offset where it differs; a wrong checksum, which hosts ignore, is only reported.</source>
        <translation>解码“idcard-reader usb --raw”保存的证件原始记录（1297、1809 或 2321 字节），并打印其中的内容。没有 FILE 或 FILE 为 - 时，从标准输入读取。其他内容一律拒绝，并报告不符之处的偏移量；主程序并不检查的校验和如果有误，只作报告。</translation>
    </message>
    <message>
        <source>  idcard-reader decode visitor.rec
      show the card
  idcard-reader decode visitor.rec --json --out visitor
      print JSON, save the card in the folder &quot;visitor&quot;
  idcard-reader decode &lt; visitor.rec
      the same from standard input
</source>
        <translation>  idcard-reader decode visitor.rec
      显示证件
  idcard-reader decode visitor.rec --json --out visitor
      打印 JSON，并把证件存入文件夹“visitor”
  idcard-reader decode &lt; visitor.rec
      同上，从标准输入读取
</translation>
    </message>
    <message>
        <source>paint the pictures of a described card</source>
        <translation>绘制描述文件中的证件的图像</translation>
    </message>
    <message>
        <source>Paints the pictures of a described card, as a reading of that card would, without a reader and without a card. CARD is a file that describes a card, or a name from &quot;idcard-reader cards&quot;. The faults of the description do not count, and the portrait is painted even when the description says that the photo is compressed.</source>
        <translation>绘制描述文件中的证件的图像，与读取该证件时相同，不需要读卡器，也不需要证件。CARD 是描述证件的文件，或“idcard-reader cards”列出的名称。描述中的故障不起作用；即使描述中写明照片是压缩的，也会绘制肖像。</translation>
    </message>
    <message>
        <source>  idcard-reader render my-card.json --out pictures
      write pictures/front.jpg and pictures/back.jpg
  idcard-reader render my-card.json --out pictures --force
      paint again after changing the description
</source>
        <translation>  idcard-reader render my-card.json --out pictures
      写入 pictures/front.jpg 和 pictures/back.jpg
  idcard-reader render my-card.json --out pictures --force
      修改描述之后重新绘制
</translation>
    </message>
    <message>
        <source>Write the pictures front.jpg and back.jpg to this folder, which is made if need be. Only their owner can read the files. A permit for Hong Kong, Macao and Taiwan residents whose number begins with none of 81, 82, 83 has no back.jpg.</source>
        <translation>把图像 front.jpg 和 back.jpg 写入此文件夹，必要时新建。文件只有属主可读。号码不以 81、82、83 开头的港澳台居民居住证没有 back.jpg。</translation>
    </message>
    <message>
        <source>Replace the pictures that the folder of --out holds. Without it nothing is overwritten.</source>
        <translation>替换 --out 指定的文件夹中已有的图像。不加此选项时不覆盖任何文件。</translation>
    </message>
    <message>
        <source>list the cards that the simulator has built in</source>
        <translation>列出模拟器内置的证件</translation>
    </message>
    <message>
        <source>Lists the cards that the simulator has built in, for use with --simulate.</source>
        <translation>列出模拟器内置的证件，供 --simulate 使用。</translation>
    </message>
    <message>
        <source>  idcard-reader cards
      show the names, kinds and purposes
</source>
        <translation>  idcard-reader cards
      显示名称、种类和用途
</translation>
    </message>
    <message>
        <source>find out why this machine does not read cards</source>
        <translation>检查本机无法读卡的原因</translation>
    </message>
    <message>
        <source>  idcard-reader doctor
      look at everything
  idcard-reader doctor --road usb --device 1209:0001
      look at what &quot;idcard-reader usb&quot; needs for this reader
  idcard-reader doctor --json
      print the findings for a program
</source>
        <translation>  idcard-reader doctor
      检查全部内容
  idcard-reader doctor --road usb --device 1209:0001
      检查“idcard-reader usb”使用这台读卡器所需的内容
  idcard-reader doctor --json
      打印供程序使用的检查结果
</translation>
    </message>
    <message>
        <source>Look at this reader alone, by its vendor and product id: four hexadecimal digits each, such as 1209:0001. Without it, every device that could be a reader is looked at.</source>
        <translation>只检查这台读卡器，以厂商标识和产品标识指定：各四位十六进制数字，例如 1209:0001。不指定时，检查每个可能是读卡器的设备。</translation>
    </message>
    <message>
        <source>Look only at what one way of reading needs: library, the reader maker&apos;s library (&quot;idcard-reader read&quot;, readIDCard), or usb, the reader on the USB bus (&quot;idcard-reader usb&quot;, CUsbIdReader).</source>
        <translation>只检查一种读卡方式所需的：library，即读卡器厂商的库（“idcard-reader read”、readIDCard）；或 usb，即 USB 上的读卡器（“idcard-reader usb”、CUsbIdReader）。</translation>
    </message>
    <message>
        <source>Report on standard error what is done, with the messages of the libraries. Card data is never shown there.</source>
        <translation>在标准错误上报告所做的事，包括各个库的消息。其中从不显示证件内容。</translation>
    </message>
    <message>
        <source>
See &quot;idcard-reader --help&quot;.</source>
        <translation>
请看“idcard-reader --help”。</translation>
    </message>
    <message>
        <source>There is no command %1; the commands are %2.</source>
        <translation>没有命令 %1；可用的命令有 %2。</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>There is no command %1; did you mean %2?</source>
        <translation>没有命令 %1；您是不是要用 %2？</translation>
    </message>
    <message>
        <source>The command comes before its options, and %1 is none.</source>
        <translation>命令应写在选项之前，而 %1 不是命令。</translation>
    </message>
    <message>
        <source>help takes one command, not %1 as well.</source>
        <translation>help 只接受一个命令，不能再有 %1。</translation>
    </message>
    <message>
        <source>A command is missing, for instance &quot;idcard-reader read&quot;.</source>
        <translation>缺少命令，例如“idcard-reader read”。</translation>
    </message>
    <message>
        <source>Reading ended after %1 ms with the code %2.</source>
        <translation>读卡在 %1 毫秒后结束，代码为 %2。</translation>
    </message>
    <message>
        <source>
See &quot;idcard-reader %1 --help&quot;.</source>
        <translation>
请看“idcard-reader %1 --help”。</translation>
    </message>
    <message>
        <source>--simulate has no meaning together with --road usb: it stands in for the reader maker&apos;s library. idcard-virtual-reader simulates a reader on the USB bus.</source>
        <translation>--simulate 不能与 --road usb 一起使用：它代替的是读卡器厂商的库。idcard-virtual-reader 可模拟 USB 读卡器。</translation>
    </message>
    <message>
        <source>%1 only has a meaning together with --road usb.</source>
        <translation>%1 须与 --road usb 一起使用。</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1%2</translation>
    </message>
    <message>
        <source>The reader asks again and again for another try, or does not answer; the reading was given up after %1 s.</source>
        <translation>读卡器一再要求重试，或没有应答；读卡在 %1 秒后放弃。</translation>
    </message>
    <message>
        <source>Saved the pictures in %1.</source>
        <translation>图像已保存到 %1。</translation>
    </message>
    <message>
        <source>The simulator is %1.</source>
        <translation>模拟器为 %1。</translation>
    </message>
    <message>
        <source>Kept the record in %1.</source>
        <translation>记录已保存到 %1。</translation>
    </message>
    <message>
        <source>Lay a card on the reader (%1 s left, Ctrl-C ends)</source>
        <translation>请将证件放在读卡器上（剩余 %1 秒，按 Ctrl-C 结束）</translation>
    </message>
    <message>
        <source>Broken off before a card was found; nothing was read.</source>
        <translation>找到证件之前已中断；没有读到任何内容。</translation>
    </message>
    <message>
        <source>Watching goes on until the reader is there.</source>
        <translation>将继续等待，直到读卡器接入。</translation>
    </message>
    <message>
        <source>Saved card %1 in %2.</source>
        <translation>第 %1 张证件已保存到 %2。</translation>
    </message>
    <message>
        <source>Watching for cards; Ctrl-C ends.</source>
        <translation>正在等待证件；按 Ctrl-C 结束。</translation>
    </message>
    <message>
        <source>  idcard-reader watch --out visitors
      save every card in a folder of its own: visitors/0001, visitors/0002, ...
  idcard-reader watch --count 1
      wait for one card, however long it takes
  idcard-reader watch --json
      print failures for a program as well
  idcard-reader watch --events
      print for a program when reader and cards come and go
</source>
        <translation>  idcard-reader watch --out visitors
      把每张证件存入各自的文件夹：visitors/0001、visitors/0002……
  idcard-reader watch --count 1
      等待一张证件，不限时间
  idcard-reader watch --json
      失败时也打印供程序使用的内容
  idcard-reader watch --events
      读卡器和证件接入、离开时，打印供程序使用的内容
</translation>
    </message>
    <message>
        <source>Print one line of JSON for each event, with its time: reader-added, reader-removed, card-read with the card, card-removed, and read-failed with the error. The line of a card is then within that of its event.</source>
        <translation>每个事件打印一行 JSON，并注明时间：reader-added（读卡器接入）、reader-removed（读卡器断开）、card-read（读到证件，附证件内容）、card-removed（证件取走）和 read-failed（读卡失败，附失败信息）。证件的那一行 JSON 此时包含在其事件的一行中。</translation>
    </message>
    <message>
        <source>Looks at everything that reading a card needs on this machine and says, line by line, whether it is in order and, if not, what to do: the versions, the locale, the makers&apos; libraries, the reader on the USB bus and the right to use it, Qt&apos;s screen and JPEG plug-in, and the fonts of the pictures. Nothing is changed, no file is written and, without --service, no reader is opened: it may be used while cards are read. The makers&apos; libraries are loaded, in a process of their own; none of their functions is called.</source>
        <translation>检查本机读卡所需的一切，逐行说明是否正常，不正常时该怎么办：各部分的版本、区域设置、厂商的库和照片解码库、USB 上的读卡器及其使用权限、Qt 的屏幕和 JPEG 插件，以及图像所用的字体。检查不改变任何东西，不写文件；不用 --service 时也不打开读卡器，因此读卡期间也可以使用。厂商的库和照片解码库在单独的进程中加载，不调用其中任何函数。</translation>
    </message>
    <message>
        <source>Read through the D-Bus service too, and without it, and say what stands in its way. A card on the reader is read; nothing of it is shown.</source>
        <translation>另外通过 D-Bus 服务读卡，再不经过它读卡，并说明妨碍它的原因。会读取读卡器上的证件，但不显示其任何内容。</translation>
    </message>
    <message>
        <source>Give up when one attempt takes longer. Without a limit, a reader that keeps asking for another try is waited for forever. The time of --wait does not count. The exit status is then 11.</source>
        <translation>一次读卡超过指定秒数即放弃；不设时限时，如果读卡器一再要求重试，会一直等下去。--wait 的时间不计在内。此时退出状态为 11。</translation>
    </message>
    <message>
        <source>The way to the reader: library, through its maker&apos;s library, or usb, without it, as &quot;idcard-reader usb&quot; reads. Over usb there are no pictures of the card&apos;s sides. The default is library, unless a configuration file says otherwise.</source>
        <translation>读卡方式：library，通过读卡器厂商的库；或 usb，不用该库，与“idcard-reader usb”的读法相同。通过 usb 读卡没有证件的两面图像。默认为 library，除非配置文件另有指定。</translation>
    </message>
    <message>
        <source>End when one attempt takes longer. Without a limit, a reader that keeps asking for another try is waited for forever. The exit status is then 11.</source>
        <translation>一次读卡超过指定秒数即结束；不设时限时，如果读卡器一再要求重试，会一直等下去。此时退出状态为 11。</translation>
    </message>
    <message>
        <source>The reader&apos;s answer</source>
        <translation>读卡器的应答</translation>
    </message>
</context>
<context>
    <name>UsbList</name>
    <message>
        <source>audio</source>
        <translation>音频</translation>
    </message>
    <message>
        <source>communication</source>
        <translation>通信</translation>
    </message>
    <message>
        <source>human interface</source>
        <translation>人机接口</translation>
    </message>
    <message>
        <source>physical</source>
        <translation>物理</translation>
    </message>
    <message>
        <source>image</source>
        <translation>图像</translation>
    </message>
    <message>
        <source>printer</source>
        <translation>打印机</translation>
    </message>
    <message>
        <source>mass storage</source>
        <translation>大容量存储</translation>
    </message>
    <message>
        <source>communication data</source>
        <translation>通信数据</translation>
    </message>
    <message>
        <source>smart card</source>
        <translation>智能卡</translation>
    </message>
    <message>
        <source>video</source>
        <translation>视频</translation>
    </message>
    <message>
        <source>diagnostic</source>
        <translation>诊断</translation>
    </message>
    <message>
        <source>wireless</source>
        <translation>无线</translation>
    </message>
    <message>
        <source>miscellaneous</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>application</source>
        <translation>应用专用</translation>
    </message>
    <message>
        <source>vendor-specific</source>
        <translation>厂商自定义</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>(%1)</source>
        <translation>（%1）</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1（%2）</translation>
    </message>
    <message>
        <source>DEVICE</source>
        <translation>设备</translation>
    </message>
    <message>
        <source>There is no USB device here, except perhaps hubs. See that the reader is plugged in and has power, and that /sys/bus/usb/devices and /dev/bus/usb are there: a container or a virtual machine has only the devices that are passed through.</source>
        <translation>这里没有 USB 设备（集线器除外）。请确认读卡器已插好并通电，且 /sys/bus/usb/devices 和 /dev/bus/usb 存在：容器或虚拟机中只有传入的设备。</translation>
    </message>
    <message>
        <source>no</source>
        <translation>否</translation>
    </message>
    <message>
        <source>class %1</source>
        <translation>类别 %1</translation>
    </message>
    <message>
        <source>NODE</source>
        <translation>节点</translation>
    </message>
    <message>
        <source>MAY OPEN</source>
        <translation>可否打开</translation>
    </message>
    <message>
        <source>READER&apos;S PIPES</source>
        <translation>读卡器端点</translation>
    </message>
    <message>
        <source>WHAT IT IS</source>
        <translation>设备说明</translation>
    </message>
</context>
<context>
    <name>Usbip</name>
    <message>
        <source>it sends on without reading what it is sent</source>
        <translation>它不读取收到的数据，却继续发送</translation>
    </message>
    <message>
        <source>it gives the number %1 to two transfers at a time</source>
        <translation>它同时为两次传输使用了编号 %1</translation>
    </message>
    <message>
        <source>more than %1 of its transfers wait at a time</source>
        <translation>它同时等待的传输超过 %1 次</translation>
    </message>
    <message>
        <source>the reader was unplugged</source>
        <translation>读卡器已拔出</translation>
    </message>
    <message>
        <source>it speaks version %1 of the protocol, not %2</source>
        <translation>它使用协议版本 %1，而不是 %2</translation>
    </message>
    <message>
        <source>the bus id of its import request has no end</source>
        <translation>它的导入请求中，总线标识没有结束</translation>
    </message>
    <message>
        <source>it asks for the unknown operation %1, neither a list of devices nor an import</source>
        <translation>它请求未知的操作 %1，既不是列出设备，也不是导入</translation>
    </message>
    <message>
        <source>it sends the unknown command %1</source>
        <translation>它发送了未知的命令 %1</translation>
    </message>
    <message>
        <source>it names the device %1, but has imported %2</source>
        <translation>它指定设备 %1，但导入的是 %2</translation>
    </message>
    <message>
        <source>it sends a transfer of direction %1, neither 0 (out) nor 1 (in)</source>
        <translation>它发送的传输方向为 %1，既不是 0（发出）也不是 1（接收）</translation>
    </message>
    <message>
        <source>it sends a transfer to endpoint %1; the highest is %2</source>
        <translation>它向端点 %1 发送传输；最大为 %2</translation>
    </message>
    <message>
        <source>it sends a transfer of %1 bytes; the most is %2</source>
        <translation>它发送了 %1 字节的传输；最多为 %2</translation>
    </message>
    <message>
        <source>it sends an isochronous transfer of %1 packets; the device has no endpoint for one</source>
        <translation>它发送了 %1 个包的等时传输；设备没有这样的端点</translation>
    </message>
    <message>
        <source>%1 port %2</source>
        <translation>%1 端口 %2</translation>
    </message>
    <message>
        <source>%1 has attached the reader.</source>
        <translation>%1 已接入读卡器。</translation>
    </message>
    <message>
        <source>The connection of %1 is closed: %2.</source>
        <translation>已关闭与 %1 的连接：%2。</translation>
    </message>
    <message>
        <source>%1 has detached the reader.</source>
        <translation>%1 已断开读卡器。</translation>
    </message>
</context>
<context>
    <name>VirtualReader</name>
    <message>
        <source>Listening on %1 port %2 failed: %3. End the program that uses the port, or choose another with --port or another address of this machine with --listen.</source>
        <translation>无法在 %1 端口 %2 上监听：%3。请退出使用该端口的程序，或用 --port 另选端口，或用 --listen 另选本机的地址。</translation>
    </message>
    <message>
        <source>The card of --card is refused: %1</source>
        <translation>--card 的证件不被接受：%1</translation>
    </message>
    <message>
        <source>The faults of --fault are refused: %1</source>
        <translation>--fault 的故障不被接受：%1</translation>
    </message>
    <message>
        <source>The faults are set, %1.</source>
        <translation>故障已设定，%1。</translation>
    </message>
    <message>
        <source>Warning: %1 is not a loopback address. Anyone who reaches it can attach the reader, without a password; listen on 127.0.0.1 to prevent that.</source>
        <translation>警告：%1 不是回环地址。任何能够访问该地址的人都可以接入读卡器，无需密码；要避免这种情况，请在 127.0.0.1 上监听。</translation>
    </message>
    <message>
        <source>the line is longer than %1 bytes; give a shorter one</source>
        <translation>这一行超过 %1 字节；请缩短</translation>
    </message>
    <message>
        <source>the fault &quot;unplugged&quot; keeps the reader away; take it back with &quot;faults&quot;</source>
        <translation>故障“unplugged”使读卡器无法接入；请用“faults”取消它</translation>
    </message>
    <message>
        <source>Put a card on the reader, instead of the one that is there.</source>
        <translation>在读卡器上放上证件，取代原有的证件。</translation>
    </message>
    <message>
        <source>Take the card off the reader.</source>
        <translation>取走读卡器上的证件。</translation>
    </message>
    <message>
        <source>Set the faults that apply besides the card&apos;s own, instead of the present ones; none if the list is left out.</source>
        <translation>设定证件自身以外的故障，取代现有的故障；不给出列表时没有故障。</translation>
    </message>
    <message>
        <source>Unplug the reader; its client loses it.</source>
        <translation>拔出读卡器；客户端与它的连接随之断开。</translation>
    </message>
    <message>
        <source>Plug the reader in again; it can then be attached.</source>
        <translation>重新插入读卡器；之后可以再次接入。</translation>
    </message>
    <message>
        <source>Report the state of the reader.</source>
        <translation>报告读卡器的状态。</translation>
    </message>
    <message>
        <source>List the commands.</source>
        <translation>列出各条命令。</translation>
    </message>
    <message>
        <source>End the program.</source>
        <translation>结束程序。</translation>
    </message>
    <message>
        <source>%1 takes no argument &quot;%2&quot;; give &quot;%1&quot; alone</source>
        <translation>%1 不接受参数“%2”；请只给出“%1”</translation>
    </message>
    <message>
        <source>%1 needs an argument: &quot;%2&quot;</source>
        <translation>%1 需要一个参数：“%2”</translation>
    </message>
    <message>
        <source>there is no command &quot;%1&quot;; the commands are %2</source>
        <translation>没有命令“%1”；可用的命令有 %2</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>but no client will see %1: who may open or claim the reader is decided by the machine that it is attached to</source>
        <translation>但客户端看不到 %1：谁可以打开或占用读卡器，由它所接入的计算机决定</translation>
    </message>
    <message>
        <source>Listen on this address; 127.0.0.1 if not given, which only this machine reaches. Anyone who reaches another address can attach the reader.</source>
        <translation>在此地址上监听；未给出时为 127.0.0.1，只有本机能够访问。任何能够访问其他地址的人都可以接入读卡器。</translation>
    </message>
    <message>
        <source>an IP address of this machine, for instance 127.0.0.1</source>
        <translation>本机的 IP 地址，例如 127.0.0.1</translation>
    </message>
    <message>
        <source>Listen on this port; 3240 if not given, any free one if 0.</source>
        <translation>在此端口上监听；未给出时为 3240，为 0 时使用任一空闲端口。</translation>
    </message>
    <message>
        <source>a whole number from 0 (any free port) to %1</source>
        <translation>从 0（任一空闲端口）到 %1 的整数</translation>
    </message>
    <message>
        <source>Begin with this card on the reader: a name from &quot;idcard-reader cards&quot; or a file that describes a card. Without it the reader is empty.</source>
        <translation>启动时在读卡器上放上此证件：“idcard-reader cards”列出的名称，或描述证件的文件。不指定时读卡器是空的。</translation>
    </message>
    <message>
        <source>a card&apos;s name or file</source>
        <translation>证件的名称或文件</translation>
    </message>
    <message>
        <source>Begin with these faults, one of those below or several separated by commas.</source>
        <translation>启动时就有这些故障：下列故障之一，或用逗号分隔的几项。</translation>
    </message>
    <message>
        <source>faults separated by commas</source>
        <translation>用逗号分隔的故障</translation>
    </message>
    <message>
        <source>Ids of the reader, two numbers of four hexadecimal digits; 1209:0001 if not given.</source>
        <translation>读卡器的标识，两组四位十六进制数字；不指定时为 1209:0001。</translation>
    </message>
    <message>
        <source>two numbers of four hexadecimal digits each, for instance 1209:0001</source>
        <translation>两组四位十六进制数字，例如 1209:0001</translation>
    </message>
    <message>
        <source>End when standard input does. Without it the reader stays until Ctrl-C, SIGTERM or &quot;quit&quot;.</source>
        <translation>标准输入结束时结束。不加此选项时，读卡器一直存在，直到 Ctrl-C、SIGTERM 或“quit”。</translation>
    </message>
    <message>
        <source>Show this help.</source>
        <translation>显示此帮助。</translation>
    </message>
    <message>
        <source>Show the version.</source>
        <translation>显示版本。</translation>
    </message>
    <message>
        <source>%2 takes no argument &quot;%1&quot;.</source>
        <translation>%2 不接受参数“%1”。</translation>
    </message>
    <message>
        <source>%1 takes %2, not &quot;%3&quot;.</source>
        <translation>%1 的值应为%2，而不是“%3”。</translation>
    </message>
    <message>
        <source>Ended as asked.</source>
        <translation>已按要求结束。</translation>
    </message>
    <message>
        <source>The address and port could not be listened on, or standard output could not be written.</source>
        <translation>无法在该地址和端口上监听，或无法写入标准输出。</translation>
    </message>
    <message>
        <source>Wrong usage: an unknown option or value, or a card description or fault that is refused.</source>
        <translation>用法错误：未知的选项或值，或者不被接受的证件描述或故障。</translation>
    </message>
    <message>
        <source>Exports a simulated card reader over USB/IP, so that it can be attached to this machine as a USB device: as root, &quot;modprobe vhci-hcd&quot;, then &quot;usbip attach -r 127.0.0.1 -b 1-1&quot;. The reader&apos;s cards are described ones; no person is involved.</source>
        <translation>通过 USB/IP 提供一个模拟读卡器，可作为 USB 设备接入本机：以 root 身份运行“modprobe vhci-hcd”，再运行“usbip attach -r 127.0.0.1 -b 1-1”。读卡器上的证件都是描述出来的，不涉及任何真实的人。</translation>
    </message>
    <message>
        <source>Commands on standard input, one a line, each answered by one line</source>
        <translation>标准输入的命令，每行一条，各以一行应答</translation>
    </message>
    <message>
        <source>Faults (E: lookup, select or read)</source>
        <translation>故障（E 为 lookup、select 或 read）</translation>
    </message>
</context>
<context>
    <name>app::CardDesk</name>
    <message>
        <source>Reading ended without a result.</source>
        <translation>读卡已结束，但没有结果。</translation>
    </message>
    <message>
        <source>Read the card once more. If it happens again, let &quot;Diagnose&quot; look for the cause.</source>
        <translation>请重新读卡。如果再次出现，请用“诊断”查找原因。</translation>
    </message>
    <message>
        <source>idcard-reader printed what is not a card.</source>
        <translation>idcard-reader 输出的不是证件数据。</translation>
    </message>
</context>
<context>
    <name>app::CardHistory</name>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>证件种类</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>姓名</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>号码</translation>
    </message>
</context>
<context>
    <name>app::CardTable</name>
    <message>
        <source>Field</source>
        <translation>项目</translation>
    </message>
    <message>
        <source>Content</source>
        <translation>内容</translation>
    </message>
</context>
<context>
    <name>viewer::CardExport</name>
    <message>
        <source>The card was saved in %1.</source>
        <translation>证件已保存到 %1。</translation>
    </message>
    <message>
        <source>The card could not be saved.</source>
        <translation>无法保存证件。</translation>
    </message>
    <message>
        <source>Export as PDF</source>
        <translation>导出为 PDF</translation>
    </message>
    <message>
        <source>PDF files (*.pdf)</source>
        <translation>PDF 文件 (*.pdf)</translation>
    </message>
    <message>
        <source>The card was exported to %1.</source>
        <translation>证件已导出到 %1。</translation>
    </message>
    <message>
        <source>The PDF file could not be written.</source>
        <translation>无法写入 PDF 文件。</translation>
    </message>
    <message>
        <source>cards %1.csv</source>
        <translation>读卡记录 %1.csv</translation>
    </message>
    <message>
        <source>Export the history</source>
        <translation>导出读卡记录</translation>
    </message>
    <message>
        <source>Tables (*.csv)</source>
        <translation>表格文件 (*.csv)</translation>
    </message>
    <message>
        <source>The history was exported to %1.</source>
        <translation>读卡记录已导出到 %1。</translation>
    </message>
    <message>
        <source>The table could not be written.</source>
        <translation>无法写入表格文件。</translation>
    </message>
    <message>
        <source>The card could not be printed.</source>
        <translation>无法打印证件。</translation>
    </message>
    <message>
        <source>See that the printer is ready and that the card has pictures, and print once more.</source>
        <translation>请确认打印机已就绪、证件有图像，然后再打印一次。</translation>
    </message>
    <message>
        <source>The card was sent to the printer.</source>
        <translation>证件已发送到打印机。</translation>
    </message>
    <message>
        <source>The card was sent to the printer, without its portrait.</source>
        <translation>证件已发送到打印机，但没有照片。</translation>
    </message>
    <message>
        <source>Save in a new folder of</source>
        <translation>保存到所选文件夹下的新文件夹</translation>
    </message>
    <message>
        <source>card %1</source>
        <translation>证件 %1</translation>
    </message>
    <message>
        <source>It is the whole card: nothing is covered there.</source>
        <translation>其中是完整的证件，没有遮盖任何内容。</translation>
    </message>
</context>
<context>
    <name>viewer::CardPane</name>
    <message>
        <source>Front</source>
        <translation>正面</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>背面</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>照片</translation>
    </message>
    <message>
        <source>Fields of the card</source>
        <translation>证件的各项内容</translation>
    </message>
    <message>
        <source>This way of reading gives no picture.</source>
        <translation>这种读卡方式不提供图像。</translation>
    </message>
    <message>
        <source>Name of the holder</source>
        <translation>持证人姓名</translation>
    </message>
    <message>
        <source>Number of the document</source>
        <translation>证件号码</translation>
    </message>
    <message>
        <source>The screen does not say how large it is; the size may be wrong.</source>
        <translation>屏幕没有提供实际尺寸，显示的大小可能不准确。</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>姓名</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>号码</translation>
    </message>
    <message>
        <source>All fields</source>
        <translation>全部内容</translation>
    </message>
</context>
<context>
    <name>viewer::DiagnosisDialog</name>
    <message>
        <source>&amp;Again</source>
        <translation>重新诊断(&amp;A)</translation>
    </message>
    <message>
        <source>Diagnosis</source>
        <translation>诊断</translation>
    </message>
    <message>
        <source>What the machine lacks to read cards</source>
        <translation>本机读卡还缺少什么</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>Looking at the machine…</source>
        <translation>正在检查本机…</translation>
    </message>
    <message>
        <source>The diagnosis failed: %1</source>
        <translation>诊断失败：%1</translation>
    </message>
</context>
<context>
    <name>viewer::HistoryPane</name>
    <message>
        <source>E&amp;xport…</source>
        <translation>导出(&amp;X)…</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>清除(&amp;L)</translation>
    </message>
    <message>
        <source>Search the cards of this run</source>
        <translation>搜索本次运行的读卡记录</translation>
    </message>
    <message>
        <source>Write these cards to a table for spreadsheet programs</source>
        <translation>将这些记录导出为电子表格程序可以打开的表格</translation>
    </message>
    <message>
        <source>Forget all cards of this run</source>
        <translation>清除本次运行的全部读卡记录</translation>
    </message>
    <message>
        <source>Cards of this run</source>
        <translation>本次运行的读卡记录</translation>
    </message>
</context>
<context>
    <name>viewer::MainWindow</name>
    <message>
        <source>Card viewer</source>
        <translation>证件查看器</translation>
    </message>
    <message>
        <source>Lay a card on the reader and press Read.</source>
        <translation>请将证件放在读卡器上，然后按“读卡”。</translation>
    </message>
    <message>
        <source>&amp;Read</source>
        <translation>读卡(&amp;R)</translation>
    </message>
    <message>
        <source>Read the card on the reader</source>
        <translation>读取读卡器上的证件</translation>
    </message>
    <message>
        <source>Space or F5</source>
        <translation>空格键或 F5</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>编辑(&amp;E)</translation>
    </message>
    <message>
        <source>Lay a card on the reader; it is read automatically.</source>
        <translation>请将证件放在读卡器上，程序会自动读取。</translation>
    </message>
    <message>
        <source>The cards of this run are forgotten.</source>
        <translation>本次运行的读卡记录已清除。</translation>
    </message>
    <message>
        <source>Read each &amp;new card</source>
        <translation>自动读取新证件(&amp;N)</translation>
    </message>
    <message>
        <source>Export as P&amp;DF…</source>
        <translation>导出为 PDF(&amp;D)…</translation>
    </message>
    <message>
        <source>&amp;Print…</source>
        <translation>打印(&amp;P)…</translation>
    </message>
    <message>
        <source>Reading…</source>
        <translation>正在读卡…</translation>
    </message>
    <message>
        <source>Cover the hol&amp;der&apos;s data</source>
        <translation>遮盖个人信息(&amp;D)</translation>
    </message>
    <message>
        <source>Cause: %1</source>
        <translation>原因：%1</translation>
    </message>
    <message>
        <source>Code: %1</source>
        <translation>代码：%1</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>Copied: %1</source>
        <translation>已复制：%1</translation>
    </message>
    <message>
        <source>Nothing was copied.</source>
        <translation>没有复制任何内容。</translation>
    </message>
    <message>
        <source>While others look on. What is saved, printed or exported is the whole card.</source>
        <translation>有旁人时使用。保存、打印和导出的仍是完整的证件。</translation>
    </message>
    <message>
        <source>&amp;Card</source>
        <translation>证件(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Give up reading</source>
        <translation>停止读卡(&amp;G)</translation>
    </message>
    <message>
        <source>Save &amp;as…</source>
        <translation>另存为(&amp;A)…</translation>
    </message>
    <message>
        <source>Print pre&amp;view…</source>
        <translation>打印预览(&amp;V)…</translation>
    </message>
    <message>
        <source>Copy the &amp;name</source>
        <translation>复制姓名(&amp;N)</translation>
    </message>
    <message>
        <source>Copy the n&amp;umber</source>
        <translation>复制号码(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Copy the selected field</source>
        <translation>复制选中的内容(&amp;C)</translation>
    </message>
    <message>
        <source>Copy &amp;all fields with labels</source>
        <translation>复制全部内容（含项目名称）(&amp;A)</translation>
    </message>
    <message>
        <source>Copy the &amp;photo</source>
        <translation>复制照片(&amp;P)</translation>
    </message>
    <message>
        <source>Copy the &amp;front</source>
        <translation>复制正面图像(&amp;F)</translation>
    </message>
    <message>
        <source>Copy the &amp;back</source>
        <translation>复制背面图像(&amp;B)</translation>
    </message>
    <message>
        <source>&amp;Search the history</source>
        <translation>搜索读卡记录(&amp;S)</translation>
    </message>
    <message>
        <source>C&amp;lear the history</source>
        <translation>清除读卡记录(&amp;L)</translation>
    </message>
    <message>
        <source>S&amp;ettings…</source>
        <translation>设置(&amp;E)…</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;True size</source>
        <translation>实际大小(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Larger type</source>
        <translation>大号文字(&amp;L)</translation>
    </message>
    <message>
        <source>Always on to&amp;p</source>
        <translation>窗口置顶(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Diagnose…</source>
        <translation>诊断(&amp;D)…</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>关于(&amp;A)</translation>
    </message>
    <message>
        <source>Leave the card on the reader.</source>
        <translation>请勿移开证件。</translation>
    </message>
    <message>
        <source>Reading was given up.</source>
        <translation>已停止读卡。</translation>
    </message>
    <message>
        <source>The reader was unplugged.</source>
        <translation>读卡器已拔出。</translation>
    </message>
    <message>
        <source>Plug it in again; reading goes on by itself.</source>
        <translation>请重新插好，程序会自动继续读卡。</translation>
    </message>
    <message>
        <source>A card lies on the simulator.</source>
        <translation>模拟器上已放上证件。</translation>
    </message>
    <message>
        <source>Press Read.</source>
        <translation>请按“读卡”。</translation>
    </message>
    <message>
        <source>No card lies on the simulator.</source>
        <translation>模拟器上没有证件。</translation>
    </message>
    <message>
        <source>The card was read; look at it closely.</source>
        <translation>读卡成功，请仔细核对证件。</translation>
    </message>
    <message>
        <source>The card was read.</source>
        <translation>读卡成功。</translation>
    </message>
    <message>
        <source>Read at %1, from the history</source>
        <translation>读卡记录，%1 读取</translation>
    </message>
    <message>
        <source>An earlier card is shown.</source>
        <translation>当前显示的是以前读取的证件。</translation>
    </message>
    <message>
        <source>It was read at %1.</source>
        <translation>该证件于 %1 读取。</translation>
    </message>
    <message>
        <source>Previous card, %1</source>
        <translation>上一张证件，%1</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>详细信息</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Reading a card</source>
        <translation>怎样读卡</translation>
    </message>
    <message>
        <source>Lay the card on the reader and press Space, or let each new card be read.

A click on a field copies what it says. The photo and the sides can be dragged to other programs.

Space or F5: read	Esc: give up reading
Ctrl+1: copy the name	Ctrl+2: copy the number
Ctrl+S: save	Ctrl+P: print
F9: true size	F8: larger type
Ctrl+F: search the history	Ctrl+D: diagnose</source>
        <translation>将证件放在读卡器上，然后按空格键；也可以让程序自动读取每张新放上的证件。

单击某一项即可复制其内容。照片和正反面图像可以拖到其他程序中。

空格键或 F5：读卡；Esc：停止读卡
Ctrl+1：复制姓名；Ctrl+2：复制号码
Ctrl+S：保存；Ctrl+P：打印
F9：实际大小；F8：大号文字
Ctrl+F：搜索读卡记录；Ctrl+D：诊断</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Shows Chinese identity documents that a card reader has read. Nothing of a card is kept but what you save.</source>
        <translation>显示读卡器读取的中国身份证件。除您保存的内容外，不留存证件的任何信息。</translation>
    </message>
    <message>
        <source>It is covered, the card does not have it, or no field is selected.</source>
        <translation>它被遮盖，或证件没有此项，或没有选中任何一项。</translation>
    </message>
    <message>
        <source>It is an earlier card; another may lie on the reader.</source>
        <translation>这是先前的证件，读卡器上可能已是另一张。</translation>
    </message>
</context>
<context>
    <name>viewer::PictureView</name>
    <message>
        <source>Covered</source>
        <translation>已遮盖</translation>
    </message>
    <message>
        <source>Drag the picture to another program</source>
        <translation>可将图像拖到其他程序中</translation>
    </message>
</context>
<context>
    <name>viewer::ServiceRun</name>
    <message>
        <source>The service that reads cards did not answer.</source>
        <translation>读卡服务没有应答。</translation>
    </message>
</context>
<context>
    <name>viewer::SettingsDialog</name>
    <message>
        <source>%1 - not open to you</source>
        <translation>%1（无权使用）</translation>
    </message>
    <message>
        <source>It is a &amp;simulated reader: decode its photos</source>
        <translation>这是模拟读卡器：解码其照片(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Beep when a card was read</source>
        <translation>读卡成功时发出提示音(&amp;B)</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>As this machine is configured</source>
        <translation>按本机的配置</translation>
    </message>
    <message>
        <source>Through the reader maker&apos;s library</source>
        <translation>通过读卡器厂商的库</translation>
    </message>
    <message>
        <source>Over USB, without pictures of the sides</source>
        <translation>通过 USB，不提供正反面图像</translation>
    </message>
    <message>
        <source>From the simulator, without a reader</source>
        <translation>使用模拟器，不需要读卡器</translation>
    </message>
    <message>
        <source>Grey it</source>
        <translation>变灰</translation>
    </message>
    <message>
        <source>Grey it, then clear it</source>
        <translation>变灰，稍后清除</translation>
    </message>
    <message>
        <source>Clear it at once</source>
        <translation>立即清除</translation>
    </message>
    <message>
        <source>By number: 0001, 0002, …</source>
        <translation>按序号：0001、0002……</translation>
    </message>
    <message>
        <source>By the holder&apos;s name and number</source>
        <translation>按持证人的姓名和号码</translation>
    </message>
    <message>
        <source>That of the desktop</source>
        <translation>跟随桌面</translation>
    </message>
    <message>
        <source> s</source>
        <translation> 秒</translation>
    </message>
    <message>
        <source>Seconds until it is cleared</source>
        <translation>清除前的秒数</translation>
    </message>
    <message>
        <source>asked at the first Save</source>
        <translation>首次保存时询问</translation>
    </message>
    <message>
        <source>Re&amp;fresh</source>
        <translation>刷新(&amp;F)</translation>
    </message>
    <message>
        <source>List the USB devices again</source>
        <translation>重新列出 USB 设备</translation>
    </message>
    <message>
        <source>Cho&amp;ose…</source>
        <translation>选择(&amp;O)…</translation>
    </message>
    <message>
        <source>&amp;Read</source>
        <translation>读卡方式(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;USB reader</source>
        <translation>USB 读卡器(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Previous card</source>
        <translation>上一张证件(&amp;P)</translation>
    </message>
    <message>
        <source>Sa&amp;ve in</source>
        <translation>保存到(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Name folders</source>
        <translation>文件夹命名(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>语言(&amp;L)</translation>
    </message>
    <message>
        <source>Another language takes effect at the next start.</source>
        <translation>更改的语言在下次启动时生效。</translation>
    </message>
    <message>
        <source>The only one that is plugged in</source>
        <translation>唯一接入的读卡器</translation>
    </message>
    <message>
        <source>%1 - not plugged in</source>
        <translation>%1（未接入）</translation>
    </message>
    <message>
        <source>Save cards in</source>
        <translation>证件保存到</translation>
    </message>
    <message>
        <source>Through the service of this machine</source>
        <translation>通过本机的服务</translation>
    </message>
</context>
<context>
    <name>viewer::SimulatorPanel</name>
    <message>
        <source>Simulator</source>
        <translation>模拟器</translation>
    </message>
    <message>
        <source>Card for the simulator</source>
        <translation>模拟器上的证件</translation>
    </message>
    <message>
        <source>Faults of the simulator</source>
        <translation>模拟器的故障</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>From f&amp;ile…</source>
        <translation>从文件(&amp;I)…</translation>
    </message>
    <message>
        <source>P&amp;ut card on</source>
        <translation>放上证件(&amp;U)</translation>
    </message>
    <message>
        <source>Take it &amp;off</source>
        <translation>取走(&amp;O)</translation>
    </message>
    <message>
        <source>C&amp;ard</source>
        <translation>证件(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Fault</source>
        <translation>故障(&amp;F)</translation>
    </message>
    <message>
        <source>Card description</source>
        <translation>证件描述</translation>
    </message>
    <message>
        <source>Card descriptions (*.json);;All files (*)</source>
        <translation>证件描述 (*.json);;所有文件 (*)</translation>
    </message>
</context>
<context>
    <name>viewer::StateLine</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>De&amp;tails</source>
        <translation>详细信息(&amp;T)</translation>
    </message>
    <message>
        <source>Dia&amp;gnose</source>
        <translation>诊断(&amp;G)</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Look for what keeps cards from being read</source>
        <translation>查找无法读卡的原因</translation>
    </message>
</context>
</TS>
