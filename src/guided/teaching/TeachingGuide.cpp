#include "guided/teaching/TeachingGuide.h"

#include "config/ksGlobalConfig.h"
#include "guided/stepper/PictureDesk.h"
#include "guided/teaching/ArchivePictures.h"
#include "guided/teaching/TeachingPages.h"
#include "guided/teaching/TeachingPicture.h"
#include "workflow/ModelManager.h"

#include <valvecell/Extension.h>
#include <valvecell/IEngine.h>
#include <valvecell/IModelExamples.h>
#include <valvecell/IModelTrial.h>

#include <QPushButton>

TeachingGuide::TeachingGuide(const Parts& parts, QWidget* parent)
    : GuideDialog(parent)
    , m_parts(parts)
    , m_actions(parts.models, parts.engine)
    , m_proposer(extensionOf<IModelProposer>(parts.engine))
    , m_examples(extensionOf<IModelExamples>(parts.engine))
    , m_picture(new TeachingPicture(this))
    , m_desk(new PictureDesk(parts.core, this))
    , m_namePage(new NamePage(m_draft, parts.models, *m_desk))
    , m_proposalPage(new ProposalPage(m_draft))
    , m_checkPage(new CheckPage(m_draft, extensionOf<IModelTrial>(parts.engine), parts.home))
{
    setCompanion(m_picture);
    m_designer = addButton(QStringLiteral("designerButton"));
    for (GuidePage* page : std::initializer_list<GuidePage*>{m_namePage, m_proposalPage, m_checkPage})
        addPage(page);
    connectPages();
    begin();
    beginModel({});
}

TeachingGuide::~TeachingGuide() = default;

void TeachingGuide::connectPages()
{
    connect(m_designer, &QPushButton::clicked, this, &TeachingGuide::designerWanted);
    connect(m_desk, &PictureDesk::taken, this, &TeachingGuide::takePicture);
    connect(m_namePage, &NamePage::captureWanted, this, [this] { m_desk->capture(cameraKey()); });
    connect(m_namePage, &NamePage::archiveWanted, this, &TeachingGuide::takeLatest);
    connect(m_namePage, &NamePage::fileWanted, this, [this] { m_desk->askFile(m_parts.home); });
    connect(m_namePage, &NamePage::stationChosen, this, [this] {
        m_desk->wish();
        m_namePage->setCanCapture(m_desk->canCapture(cameraKey()));
    });
    connect(m_proposalPage, &ProposalPage::proposalWanted, this, &TeachingGuide::propose);
    connect(m_picture, &TeachingPicture::clicked, this, [this](const QPointF& pixel) {
        if (page(step()) == m_proposalPage)
            m_proposalPage->point(pixel);
    });
    connect(m_checkPage, &CheckPage::pictureChosen, m_picture, &TeachingPicture::showResult);
}

QString TeachingGuide::cameraKey() const
{
    return m_parts.config.station(m_draft.station).camKey;
}

void TeachingGuide::beginModel(const QString& name)
{
    ++m_round;
    m_desk->wish();
    m_draft = {};
    const ModelEntry entry = name.isEmpty() ? m_actions.proposal(tr("新型号")) : m_actions.entry(name);
    m_draft.name = entry.name;
    m_draft.index = entry.index;
    goTo(0);
    m_picture->setPicture({});
    m_namePage->begin(m_desk->canCapture(cameraKey()), m_oneStation);
    QStringList solutions{m_parts.config.station(1).solution};
    if (!m_oneStation)
        solutions << m_parts.config.station(2).solution;
    const QStringList known = m_actions.engine().solutions();
    for (QString& solution : solutions) {
        if (!known.contains(solution))
            solution.clear();
    }
    m_checkPage->setSolutions(solutions);
    retranslate();
}

void TeachingGuide::takePicture(const QImage& picture, const QString& name)
{
    m_draft.picture = picture;
    m_draft.source = name;
    m_draft.hints = {};
    m_picture->setPicture(picture);
    goTo(0);
    m_namePage->enter();
    emit m_namePage->changed();
    if (!m_proposer)
        return;
    propose();
    emit m_namePage->finished(); // on to the proposal, unless the name is still missing
}

void TeachingGuide::takeLatest()
{
    m_background.run(
        [home = m_parts.home, station = m_draft.station] { return ArchivePictures::latest(home, station, 1); },
        [this, wish = m_desk->wish()](const QStringList& paths) {
            if (!m_desk->stillWanted(wish))
                return;
            if (paths.isEmpty())
                emit m_desk->failed(tr("工位%1的归档中没有图像").arg(m_draft.station));
            else
                m_desk->open(paths.first());
        });
}

void TeachingGuide::propose()
{
    m_draft.proposing = true;
    m_draft.proposal = {};
    ++m_round;
    const auto work = [proposer = m_proposer, examples = m_examples, draft = m_draft] {
        Answer answer;
        answer.proposal = proposer->proposeModel(draft.picture, draft.hints);
        QString ignored;
        if (examples && !answer.proposal.parameters.isEmpty())
            answer.example = examples->makeExample(draft.picture, answer.proposal.parameters, answer.proposal.hole,
                                                   draft.source, &ignored);
        return answer;
    };
    m_background.run(work, [this, round = m_round](const Answer& answer) {
        if (round != m_round)
            return;
        m_draft.proposing = false;
        m_draft.proposal = answer.proposal;
        m_draft.example = answer.example;
        showProposal();
    });
    m_proposalPage->showProposal();
}

void TeachingGuide::showProposal()
{
    m_picture->showProposal(m_draft.proposal);
    m_proposalPage->showProposal();
}

void TeachingGuide::finish()
{
    SolutionParameters parameters;
    for (const QString& solution : qAsConst(m_draft.solutions))
        parameters.insert(solution, m_draft.proposal.parameters);
    QString error;
    if (!m_actions.teach({m_draft.name, m_draft.index, false}, parameters, &error))
        return say(Tone::Error, tr("未能保存型号“%1”：%2").arg(m_draft.name, error));
    addExample();
    const AuditChanges changes = m_actions.takeAudit();
    emit modelsChanged(changes);
    const QString name = m_draft.name;
    beginModel({});
    say(Tone::Plain, tr("已保存型号“%1”，PLC 发来它的索引时即可使用。可以接着示教下一个型号。").arg(name));
}

void TeachingGuide::addExample()
{
    QString error;
    for (const QString& solution : qAsConst(m_draft.solutions)) {
        if (m_examples && !m_draft.example.isEmpty() &&
            !m_examples->addExample(solution, m_draft.name, IModelExamples::Kind::Hole, m_draft.example, &error))
            qWarning("the example of model %s was not stored: %s", qUtf8Printable(m_draft.name), qUtf8Printable(error));
    }
}

void TeachingGuide::retranslate()
{
    m_designer->setText(tr("任务设计器(&D)…"));
    m_designer->setVisible(!m_proposer);
    if (m_proposer)
        setState(Tone::Plain, {});
    else
        setState(Tone::Warning, tr("此引擎不提出建议，请在任务设计器中示教"));
}
